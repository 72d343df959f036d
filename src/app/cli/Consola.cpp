#include "app/cli/Consola.h"

#include "core/Herramientas.h"

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::Consola
{

namespace
{

void escribir(std::FILE *salida, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), salida);
    std::fflush(salida);
}

/// Control characters, of either set, and the signs that turn the order of letters around.
bool manda(char16_t letra)
{
    return letra < 0x20 || (letra >= 0x7F && letra < 0xA0) || letra == 0x061C || letra == 0x200E || letra == 0x200F ||
           (letra >= 0x2028 && letra <= 0x202E) || (letra >= 0x2066 && letra <= 0x2069);
}

/// As a terminal may show it. Line feeds stay where the text is our own; what else ends a line or a field is a blank.
QString inofensivo(QString texto, bool conLineas)
{
    for (auto &letra : texto) {
        if (!manda(letra.unicode()) || (conLineas && letra == u'\n'))
            continue;
        letra = letra == u'\n' || letra == u'\t' || letra == u'\r' ? QChar(u' ') : QChar(QChar::ReplacementCharacter);
    }
    return texto;
}

/// JSON may name any character instead of holding it.
QString inofensivo(const QByteArray &json)
{
    QString salida;
    for (const auto letra : QString::fromUtf8(json)) {
        if (manda(letra.unicode()) && letra != u'\n')
            salida += u"\\u%1"_s.arg(letra.unicode(), 4, 16, QChar(u'0'));
        else
            salida += letra;
    }
    return salida;
}

} // namespace

void resultado(const QString &linea)
{
    escribir(stdout, inofensivo(linea, true).toUtf8() + '\n');
}

void resultado(const QStringList &campos)
{
    QStringList limpios;
    for (const auto &campo : campos)
        limpios << inofensivo(campo, false);
    escribir(stdout, limpios.join(u'\t').toUtf8() + '\n');
}

void resultado(const QJsonDocument &documento)
{
    escribir(stdout, inofensivo(documento.toJson(QJsonDocument::Indented)).toUtf8());
}

void palabras(const QString &linea)
{
    borrarAvance();
    escribir(stderr, inofensivo(linea, true).toUtf8() + '\n');
}

bool hayTerminal()
{
    static const bool terminal = isatty(STDERR_FILENO) == 1;
    return terminal;
}

void avance(const QString &linea)
{
    if (hayTerminal())
        escribir(stderr, "\r\033[K" + inofensivo(linea, false).toUtf8());
}

void borrarAvance()
{
    if (hayTerminal())
        escribir(stderr, "\r\033[K");
}

bool hayHerramientas()
{
    const auto pieza = u"libimobiledevice"_s;
    if (!Herramientas::queFalta().contains(pieza))
        return true;
    palabras(u"Falta una pieza: esta app se apoya en %1, que no encuentro en el Mac."_s.arg(pieza));
    return false;
}

} // namespace vellora::Consola
