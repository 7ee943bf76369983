<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="vi" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Đang chờ</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Tải xuống thất bại</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Đã tạm dừng</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Tạm dừng</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Tiếp tục</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Thử lại</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Xóa</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Danh sách tải xuống</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Tạm dừng tất cả</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Tiếp tục tất cả</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Cài đặt</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Danh sách rỗng</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 mục tải xuống</numerusform>
        </translation>
    </message>
</context>
</TS>
