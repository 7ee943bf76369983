<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>In attesa</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Download non riuscito</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>In pausa</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Metti in pausa</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Riprendi</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Riprova</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Elimina</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Metti tutto in pausa</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Riprendi tutto</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Impostazioni</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Elenco vuoto</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 download</numerusform>
            <numerusform>%1 download</numerusform>
        </translation>
    </message>
</context>
</TS>
