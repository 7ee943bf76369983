#include "Host/Site/SiteCover.h"

#include "Host/Crypto/PictureCipher.h"

namespace KXHost {

std::optional<std::string> CoverBytes(const SiteRecording& recording, CoverState state)
{
    if (state == CoverState::None || state == CoverState::Missing)
        return std::nullopt;
    if (state == CoverState::Garbage)
        return std::string(4096, '\x5A');
    const std::string strClear =
        state == CoverState::NoPicture ? "This is a text." : SampleFile(recording.strPicture).toStdString();
    const char* pOther = state == CoverState::WrongKey ? " of another" : "";
    const std::string strKeyText = recording.fields.value(QStringLiteral("strCloudText4")).toString().toStdString();
    std::string strSealed;
    const CipherResult result = EncryptPicture(strClear, strKeyText + pOther, recording.strSerial.toStdString(),
                                               recording.strPassword.toStdString(), strSealed);
    return result == CipherResult::Ok ? std::optional<std::string>(strSealed) : std::nullopt;
}

} // namespace KXHost
