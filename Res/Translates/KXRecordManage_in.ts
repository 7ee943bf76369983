<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="id" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Menunggu</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Gagal mengunduh</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Dijeda</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Jeda</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Lanjutkan</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Coba lagi</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Hapus</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Unduhan</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Jeda semua</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Lanjutkan semua</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Pengaturan</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Daftar kosong</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 unduhan</numerusform>
        </translation>
    </message>
</context>
</TS>
