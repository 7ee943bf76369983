<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="lt" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Laukiama</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Atsisiųsti nepavyko</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Pristabdyta</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pristabdyti</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Tęsti</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Bandyti dar kartą</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Ištrinti</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Atsisiuntimai</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pristabdyti visus</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Tęsti visus</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Nustatymai</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Sąrašas tuščias</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 atsisiuntimas</numerusform>
            <numerusform>%1 atsisiuntimai</numerusform>
            <numerusform>%1 atsisiuntimų</numerusform>
        </translation>
    </message>
</context>
</TS>
