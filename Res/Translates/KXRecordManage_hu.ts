<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="hu" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Várakozik</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>A letöltés sikertelen</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Szüneteltetve</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Szüneteltetés</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Folytatás</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Újrapróbálás</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Törlés</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Letöltések</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Összes szüneteltetése</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Összes folytatása</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Beállítások</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Nincs letöltés</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 letöltés</numerusform>
        </translation>
    </message>
</context>
</TS>
