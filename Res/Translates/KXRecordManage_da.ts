<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="da" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Venter</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Download mislykkedes</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Sat på pause</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Sæt på pause</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Genoptag</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Prøv igen</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Slet</translation>
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
        <translation>Sæt alle på pause</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Genoptag alle</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Indstillinger</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Listen er tom</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 download</numerusform>
            <numerusform>%1 downloads</numerusform>
        </translation>
    </message>
</context>
</TS>
