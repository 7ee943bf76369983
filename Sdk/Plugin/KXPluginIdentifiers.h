#pragma once

// Identifiers of the host's plug-in family, the same set in the host and in every plug-in.
namespace KXPluginIdentifiers {

constexpr char WidgetPluginInterface[] = "{72F83323-8AEC-4B7C-8744-3332523E1D75}"; // default of Id()
constexpr char SecondFamilyMember[] = "{321B109F-7634-49A0-8E2B-BC60CCBA1863}";
constexpr char RecordManage[] = "{94b7b2ae-700b-0c85-1624-bedf67f1b547}"; // this plug-in
constexpr char FourthFamilyMember[] = "{94b7b2ae-700c-0c84-1111-bedf61f1b547}";
constexpr char FifthFamilyMember[] = "{94b7b2ae-700c-0c84-1111-bedf61f1b682}";

} // namespace KXPluginIdentifiers
