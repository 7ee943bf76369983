<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>等待下载</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>下载失败</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>已暂停</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>下载列表</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>全部暂停</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>全部继续</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>暂无下载任务</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>共 %1 个下载</numerusform>
        </translation>
    </message>
</context>
</TS>
