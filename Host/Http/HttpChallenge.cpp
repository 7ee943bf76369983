#include "Host/Http/HttpChallenge.h"

namespace KXHost {

namespace {

bool IsTokenCharacter(char c)
{
    return static_cast<unsigned char>(c) > ' ' && c != 0x7f && !QByteArray(",;=\"()<>@\\[]?{}").contains(c);
}

// Walks over one field.
class FieldReader
{
public:
    explicit FieldReader(const QByteArray& field)
        : m_field(field)
    {}

    bool AtEnd() const { return m_iAt >= m_field.size(); }
    void Skip() { ++m_iAt; }

    void SkipBlanks(bool bCommasToo)
    {
        while (!AtEnd() && (Here() == ' ' || Here() == '\t' || (bCommasToo && Here() == ',')))
            ++m_iAt;
    }

    bool SkipOver(char c)
    {
        SkipBlanks(false);
        if (AtEnd() || Here() != c)
            return false;
        ++m_iAt;
        return true;
    }

    QByteArray Token()
    {
        const int iBegin = m_iAt;
        while (!AtEnd() && IsTokenCharacter(Here()))
            ++m_iAt;
        return m_field.mid(iBegin, m_iAt - iBegin);
    }

    QByteArray Value()
    {
        SkipBlanks(false);
        if (!SkipOver('"'))
            return Token();
        QByteArray value;
        for (; !AtEnd() && Here() != '"'; ++m_iAt) {
            if (Here() == '\\' && m_iAt + 1 < m_field.size())
                ++m_iAt;
            value += Here();
        }
        Skip();
        return value;
    }

private:
    char Here() const { return m_field.at(m_iAt); }

    const QByteArray m_field;
    int m_iAt = 0;
};

// A word without "=" behind it begins the next challenge; one with it is a parameter of the last.
void ReadField(const QByteArray& field, QList<HttpChallenge>& challenges)
{
    FieldReader reader(field);
    bool bBegun = false;
    for (reader.SkipBlanks(true); !reader.AtEnd(); reader.SkipBlanks(true)) {
        const QByteArray word = reader.Token().toLower();
        if (word.isEmpty()) {
            reader.Skip();
        } else if (!reader.SkipOver('=')) {
            challenges.append({word, {}});
            bBegun = true;
        } else {
            const QByteArray value = reader.Value();
            if (bBegun)
                challenges.last().parameters.insert(word, value);
        }
    }
}

} // namespace

QList<HttpChallenge> ReadChallenges(const QList<QByteArray>& fields)
{
    QList<HttpChallenge> challenges;
    for (const QByteArray& field : fields)
        ReadField(field, challenges);
    return challenges;
}

} // namespace KXHost
