<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>대기 중</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>다운로드 실패</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>일시중지됨</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>일시중지</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>재개</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>다시 시도</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>삭제</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>다운로드 목록</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>모두 일시중지</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>모두 재개</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>설정</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>다운로드 없음</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>다운로드 %1개</numerusform>
        </translation>
    </message>
</context>
</TS>
