<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fi" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Odottaa</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Lataus epäonnistui</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Keskeytetty</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Keskeytä</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Jatka</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Yritä uudelleen</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Poista</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Lataukset</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Keskeytä kaikki</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Jatka kaikkia</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Asetukset</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Ei latauksia</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 lataus</numerusform>
            <numerusform>%1 latausta</numerusform>
        </translation>
    </message>
</context>
</TS>
