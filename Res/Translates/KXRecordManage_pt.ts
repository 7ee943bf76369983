<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>Em espera</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Falha na transferência</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>Em pausa</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Retomar</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Tentar novamente</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Excluir</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Transferências</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pausar tudo</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Retomar tudo</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Definições</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Sem downloads</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 transferência</numerusform>
            <numerusform>%1 transferências</numerusform>
        </translation>
    </message>
</context>
</TS>
