<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sv" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Väntar</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Nedladdningen misslyckades</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Pausad</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Återuppta</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Försök igen</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Ta bort</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Nedladdningar</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pausa alla</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Återuppta alla</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Inställningar</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Listan är tom</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 nedladdning</numerusform>
            <numerusform>%1 nedladdningar</numerusform>
        </translation>
    </message>
</context>
</TS>
