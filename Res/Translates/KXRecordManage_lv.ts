<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="lv" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Gaida</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Lejupielāde neizdevās</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Pauzēta</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pauzēt</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Atsākt</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Mēģināt vēlreiz</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Dzēst</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Lejupielādes</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pauzēt visas</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Atsākt visas</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Iestatījumi</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Nav lejupielāžu</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 lejupielāde</numerusform>
            <numerusform>%1 lejupielādes</numerusform>
            <numerusform>%1 lejupielāžu</numerusform>
        </translation>
    </message>
</context>
</TS>
