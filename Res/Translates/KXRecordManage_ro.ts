<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ro" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>În așteptare</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Descărcare eșuată</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>În pauză</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pune în pauză</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Reia</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Reîncearcă</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Șterge</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Descărcări</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pune tot în pauză</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Reia tot</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Setări</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Lista este goală</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 descărcare</numerusform>
            <numerusform>%1 descărcări</numerusform>
            <numerusform>%1 de descărcări</numerusform>
        </translation>
    </message>
</context>
</TS>
