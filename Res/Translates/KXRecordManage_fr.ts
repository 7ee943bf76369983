<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>DownloadItem</name>
    <message>
        <source>mobile_common_download_manager_wait_download</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>mobile_common_download_manager_download_failure</source>
        <translation>Échec du téléchargement</translation>
    </message>
    <message>
        <source>panel_pause</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>row_action_pause</source>
        <translation>Mettre en pause</translation>
    </message>
    <message>
        <source>row_action_resume</source>
        <translation>Reprendre</translation>
    </message>
    <message>
        <source>row_action_retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>row_action_delete</source>
        <translation>Supprimer</translation>
    </message>
</context>
<context>
    <name>DownloadWidget</name>
    <message>
        <source>common_download_list</source>
        <translation>Téléchargements</translation>
    </message>
    <message>
        <source>pc_download_video_suspend_all</source>
        <translation>Tout mettre en pause</translation>
    </message>
    <message>
        <source>pc_download_video_resume_all</source>
        <translation>Tout reprendre</translation>
    </message>
    <message>
        <source>common_set</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>ib_mobile_common_download_manager_no_download_task</source>
        <translation>Aucune tâche</translation>
    </message>
    <message numerus="yes">
        <source>play_multiple_views_total</source>
        <translation>
            <numerusform>%1 téléchargement</numerusform>
            <numerusform>%1 téléchargements</numerusform>
        </translation>
    </message>
</context>
</TS>
