<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Oczekuje</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Pobieranie nieudane</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Wstrzymano</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Wstrzymaj</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Wznów</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Ponów</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Usuń</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Pobieranie</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Wstrzymaj wszystkie</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Wznów wszystkie</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Ustawienia</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Brak pobrań</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 pobranie</numerusform>
            <numerusform>%1 pobrania</numerusform>
            <numerusform>%1 pobrań</numerusform>
        </translation>
    </message>
</context>
</TS>
