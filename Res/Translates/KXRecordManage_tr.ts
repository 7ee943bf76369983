<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="tr" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Bekliyor</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>İndirme başarısız</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Duraklatıldı</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Duraklat</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Sürdür</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Yeniden dene</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Sil</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>İndirmeler</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Tümünü duraklat</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Tümünü sürdür</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Ayarlar</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>İndirme yok</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 indirme</numerusform>
        </translation>
    </message>
</context>
</TS>
