<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="th" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>กำลังรอ</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>ดาวน์โหลดไม่สำเร็จ</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>หยุดชั่วคราว</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>รายการดาวน์โหลด</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>หยุดทั้งหมดชั่วคราว</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>ดำเนินการต่อทั้งหมด</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>การตั้งค่า</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>ไม่มีรายการ</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>ดาวน์โหลด %1 รายการ</numerusform>
        </translation>
    </message>
</context>
</TS>
