<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="bg" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Изчакване</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Неуспешно изтегляне</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>На пауза</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Пауза</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Продължи</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Опитай отново</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Изтрий</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Изтегляния</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Пауза на всички</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Продължи всички</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Няма задачи</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 изтегляне</numerusform>
            <numerusform>%1 изтегляния</numerusform>
        </translation>
    </message>
</context>
</TS>
