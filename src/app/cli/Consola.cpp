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

} // namespace

void resultado(const QString &linea)
{
    escribir(stdout, linea.toUtf8() + '\n');
}

void resultado(const QJsonDocument &documento)
{
    escribir(stdout, documento.toJson(QJsonDocument::Indented));
}

void palabras(const QString &linea)
{
    borrarAvance();
    escribir(stderr, linea.toUtf8() + '\n');
}

bool hayTerminal()
{
    static const bool terminal = isatty(STDERR_FILENO) == 1;
    return terminal;
}

void avance(const QString &linea)
{
    if (hayTerminal())
        escribir(stderr, "\r\033[K" + linea.toUtf8());
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
