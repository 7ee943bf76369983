<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sk" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Čaká sa</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Stiahnutie zlyhalo</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Pozastavené</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pozastaviť</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Obnoviť</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Skúsiť znova</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Odstrániť</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Sťahovanie</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pozastaviť všetko</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Obnoviť všetko</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Nastavenia</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Žiadne úlohy</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 sťahovanie</numerusform>
            <numerusform>%1 sťahovania</numerusform>
            <numerusform>%1 sťahovaní</numerusform>
        </translation>
    </message>
</context>
</TS>
