#pragma once

#include <QtCore/QObject>
#include <QtCore/QVariant>

class DownloadWidget;
class QTranslator;

// The plug-in-wide data: what Init makes and Destory frees. Owns the panel, switches the language, applies the style
// sheet.
//
// Thread: the GUI thread; the host sends the language event there.
class KXRecordManageGlobalData : public QObject
{
    Q_OBJECT

public:
    explicit KXRecordManageGlobalData(QObject* pParent);
    // Frees the panel. The translator stays in force: the client may still show texts of this plug-in.
    ~KXRecordManageGlobalData() override;

    // The last one made; dangling once that one was destroyed.
    static KXRecordManageGlobalData* Instance() { return s_pInstance; }
    // Null until Init succeeded.
    DownloadWidget* Panel() const { return m_pDownloadWidget; }

public slots:
    // Language, panel and style sheet, once. A text that is no JSON changes nothing.
    void Init(QString strlist);
    // [QString language code]; any other list leaves the plug-in without a translator.
    void UpdatePluginLanguage(QVariantList list);

private:
    void ApplyStyleSheet();

    static KXRecordManageGlobalData* s_pInstance;
    QTranslator* m_pTranslator = nullptr;
    DownloadWidget* m_pDownloadWidget = nullptr;
};
