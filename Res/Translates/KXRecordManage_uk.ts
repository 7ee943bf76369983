<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="uk" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Очікування</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Помилка завантаження</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Призупинено</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Призупинити</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Відновити</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Повторити</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Видалити</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Завантаження</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Призупинити все</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Відновити все</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Налаштування</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Немає завдань</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 завантаження</numerusform>
            <numerusform>%1 завантаження</numerusform>
            <numerusform>%1 завантажень</numerusform>
        </translation>
    </message>
</context>
</TS>
