<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="et" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Ootel</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Allalaadimine nurjus</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Peatatud</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Peata</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Jätka</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Proovi uuesti</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Kustuta</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Allalaadimised</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Peata kõik</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Jätka kõiki</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Seaded</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Loend on tühi</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 allalaadimine</numerusform>
            <numerusform>%1 allalaadimist</numerusform>
        </translation>
    </message>
</context>
</TS>
