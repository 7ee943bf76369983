<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="cs" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Čeká se</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Stažení se nezdařilo</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Pozastaveno</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pozastavit</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Obnovit</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Zkusit znovu</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Smazat</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Stahování</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pozastavit vše</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Obnovit vše</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Nastavení</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Nic ke stažení</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 stahování</numerusform>
            <numerusform>%1 stahování</numerusform>
            <numerusform>%1 stahování</numerusform>
        </translation>
    </message>
</context>
</TS>
