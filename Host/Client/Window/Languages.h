#pragma once

#include <QtCore/QString>

namespace KXClient {

struct Language
{
    const char* pszCode; // as the plug-in's language event takes it
    const char* pszName; // in the language itself, UTF-8
};

// All languages that the plug-in has texts for, by code.
constexpr Language Languages[] = {
    {"bg", u8"Български"},   {"cs", u8"Čeština"},    {"da", u8"Dansk"},      {"de", u8"Deutsch"},
    {"en", u8"English"},     {"es", u8"Español"},    {"et", u8"Eesti"},      {"fi", u8"Suomi"},
    {"fr", u8"Français"},    {"hu", u8"Magyar"},     {"in", u8"Indonesia"},  {"it", u8"Italiano"},
    {"ja", u8"日本語"},      {"ko", u8"한국어"},     {"lt", u8"Lietuvių"},   {"lv", u8"Latviešu"},
    {"nl", u8"Nederlands"},  {"pl", u8"Polski"},     {"pt", u8"Português"},  {"ro", u8"Română"},
    {"ru", u8"Русский"},     {"sk", u8"Slovenčina"}, {"sr", u8"Српски"},     {"sv", u8"Svenska"},
    {"th", u8"ไทย"},         {"tr", u8"Türkçe"},     {"uk", u8"Українська"}, {"vi", u8"Tiếng Việt"},
    {"zh_CN", u8"简体中文"},
};

bool IsLanguage(const QString& strCode);

} // namespace KXClient
