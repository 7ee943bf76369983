<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sr" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>На чекању</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Преузимање није успело</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Паузирано</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Паузирај</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Настави</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Покушај поново</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Обриши</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Преузимања</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Паузирај све</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Настави све</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Подешавања</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Празна листа</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 преузимање</numerusform>
            <numerusform>%1 преузимања</numerusform>
            <numerusform>%1 преузимања</numerusform>
        </translation>
    </message>
</context>
</TS>
