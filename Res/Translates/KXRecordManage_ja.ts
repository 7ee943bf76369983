<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>待機中</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>ダウンロード失敗</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>一時停止中</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>ダウンロード一覧</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>すべて一時停止</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>すべて再開</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>ダウンロードなし</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 件のダウンロード</numerusform>
        </translation>
    </message>
</context>
</TS>
