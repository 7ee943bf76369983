<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>En espera</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Error de descarga</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>En pausa</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Pausar</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Reanudar</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Eliminar</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Descargas</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Pausar todo</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Reanudar todo</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Sin descargas</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 descarga</numerusform>
            <numerusform>%1 descargas</numerusform>
        </translation>
    </message>
</context>
</TS>
