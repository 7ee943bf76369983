<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Ожидание</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Ошибка загрузки</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Приостановлено</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Приостановить</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Возобновить</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Удалить</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Загрузки</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Приостановить все</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Возобновить все</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Нет загрузок</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 загрузка</numerusform>
            <numerusform>%1 загрузки</numerusform>
            <numerusform>%1 загрузок</numerusform>
        </translation>
    </message>
</context>
</TS>
