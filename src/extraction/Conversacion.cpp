#include "extraction/Conversacion.h"

#include "extraction/Renglones.h"

#include <QFile>
#include <QFileInfo>

#include <cstring>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qsizetype letrasDelDia = 10; // dd/MM/yyyy

/// The line begins a message.
bool empieza(QByteArrayView linea)
{
    return linea.startsWith('[') && linea.indexOf(']') > 0;
}

QString recortado(QByteArrayView bytes)
{
    return QString::fromUtf8(bytes).trimmed();
}

} // namespace

Mensajes Mensajes::leer(const QString &fichero)
{
    QFile entrada(fichero);
    if (!QFileInfo(fichero).isFile() || !entrada.open(QIODevice::ReadOnly))
        return {};
    return deTexto(entrada.readAll());
}

Mensajes Mensajes::deTexto(QByteArray texto)
{
    Mensajes leidos;
    leidos.texto = std::move(texto);
    const QByteArrayView todo(leidos.texto);
    for (qsizetype sitio = 0; sitio < todo.size();) {
        const auto *salto =
            static_cast<const char *>(memchr(todo.data() + sitio, '\n', static_cast<std::size_t>(todo.size() - sitio)));
        const auto fin = salto == nullptr ? todo.size() : salto - todo.data();
        if (empieza(todo.sliced(sitio, fin - sitio)))
            leidos.principios.push_back(sitio);
        sitio = fin + 1;
    }
    return leidos;
}

QByteArrayView Mensajes::bytesDe(qsizetype cual) const
{
    const auto indice = static_cast<std::size_t>(cual);
    const auto desde = principios[indice];
    const auto hasta = indice + 1 < principios.size() ? principios[indice + 1] : texto.size();
    return QByteArrayView(texto).sliced(desde, hasta - desde);
}

Mensaje Mensajes::mensaje(qsizetype cual) const
{
    const auto bytes = bytesDe(cual);
    const auto cierre = bytes.indexOf(']');
    Mensaje uno;
    uno.cuando = QString::fromUtf8(bytes.sliced(1, cierre - 1));
    auto linea = bytes.sliced(cierre + 1);
    QByteArrayView siguientes;
    if (const auto salto = linea.indexOf('\n'); salto >= 0) {
        siguientes = linea.sliced(salto + 1);
        linea = linea.first(salto);
    }
    const auto resto = recortado(linea);
    const auto dosPuntos = resto.indexOf(u':');
    uno.mio = resto.startsWith("YO:"_L1);
    if (!uno.mio && dosPuntos >= 0)
        uno.quien = resto.first(dosPuntos).trimmed();
    uno.texto = resto.sliced(dosPuntos + 1).trimmed();
    // Lines that follow go on with it; empty ones are left out.
    while (!siguientes.isEmpty()) {
        const auto salto = siguientes.indexOf('\n');
        const auto otra = salto < 0 ? siguientes : siguientes.first(salto);
        siguientes = salto < 0 ? QByteArrayView() : siguientes.sliced(salto + 1);
        if (!otra.isEmpty())
            uno.texto += u'\n' + QString::fromUtf8(Renglones::sinSangria(otra));
    }
    return uno;
}

QString Mensajes::dia(qsizetype cual) const
{
    const auto bytes = bytesDe(cual);
    const auto cuando = bytes.sliced(1, bytes.indexOf(']') - 1);
    return QString::fromUtf8(cuando.first(std::min(cuando.size(), letrasDelDia)));
}

} // namespace vellora
