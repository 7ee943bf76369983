#include "Host/Client/Window/WindowStyle.h"

#include "Host/KXGui/Theme.h"
#include "KXGui/KXColor.h"
#include "KXGui/KXPublic.h"
#include "KXGui/KXSvgPixmap.h"

#include <QtCore/QFile>
#include <QtGui/QFontInfo>
#include <QtGui/QIcon>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

// Outside of any namespace, as the macro demands; without it the linker drops the resources of a static library.
static void KeepResources()
{
    Q_INIT_RESOURCE(KXClient);
}

namespace KXClient {

namespace {

constexpr int LeastTextPixels = 14;

QColor Colour(const char* pszKey)
{
    return KXColor::color(QLatin1String(pszKey), 1.0);
}

QPalette TablePalette()
{
    constexpr struct
    {
        QPalette::ColorRole role;
        const char* pszKey;
    } roles[] = {
        {QPalette::Window, "pc012"},      {QPalette::WindowText, "pc004"},      {QPalette::Base, "pc011"},
        {QPalette::Text, "pc004"},        {QPalette::Button, "pc011"},          {QPalette::ButtonText, "pc004"},
        {QPalette::Highlight, "pc001"},   {QPalette::HighlightedText, "pc003"}, {QPalette::ToolTipBase, "pc011"},
        {QPalette::ToolTipText, "pc004"}, {QPalette::AlternateBase, "pc012"},   {QPalette::Mid, "pc008"},
        {QPalette::Link, "pc001"},
    };
    QPalette palette;
    for (const auto& role : roles)
        palette.setColor(role.role, Colour(role.pszKey));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, Colour("pc006"));
    return palette;
}

QString StyleSheet(bool bDark)
{
    QFile file(QStringLiteral(":/KXClient/window.css"));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    QString strSheet = QString::fromUtf8(file.readAll());
    const QMap<QString, QString> colours = KXColor::colorMap();
    for (auto it = colours.begin(); it != colours.end(); ++it)
        strSheet.replace(it.key(), it.value());
    KXPublic::translateQssKey(strSheet);
    // The marks in check boxes have the colour of text on the accent.
    return bDark ? strSheet.replace(QLatin1String(":/KXClient/"), QLatin1String(":/KXClient/dark/")) : strSheet;
}

} // namespace

QIcon WindowIcon()
{
    KeepResources();
    KXSvgPixmap picture(QStringLiteral(":/KXClient/kxclient.svg"));
    QIcon icon;
    for (int iSide : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(picture.normalPixmap(QSize(iSide, iSide), QString()));
    return icon;
}

void ApplyWindowStyle(bool bDark)
{
    KeepResources();
    KXHost::SetDarkTheme(bDark);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(TablePalette());
    QFont font = QApplication::font();
    if (QFontInfo(font).pixelSize() < LeastTextPixels)
        font.setPixelSize(LeastTextPixels);
    QApplication::setFont(font);
    qApp->setStyleSheet(StyleSheet(bDark));
    QApplication::setWindowIcon(WindowIcon());
}

} // namespace KXClient
