<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Download fehlgeschlagen</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Alle anhalten</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Alle fortsetzen</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Liste ist leer</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 Download</numerusform>
            <numerusform>%1 Downloads</numerusform>
        </translation>
    </message>
</context>
</TS>
