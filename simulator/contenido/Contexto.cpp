#include "contenido/Contexto.h"

#include "contenido/Base.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace simulado
{

QString Persona::movil() const
{
    QString salida;
    for (const QChar c : telefonos.value(0))
        if (c.isDigit() || c == u'+')
            salida += c;
    return salida.startsWith(u'+') ? salida : u"+34"_s + salida;
}

static QString conCarpeta(const QString &ruta)
{
    QDir().mkpath(QFileInfo(ruta).path());
    return ruta;
}

QString Contexto::dominio(const char *nombre, const QString &ruta)
{
    return conCarpeta(raiz + u"/dominios/"_s + QString::fromUtf8(nombre) + u'/' + ruta);
}

QString Contexto::media(const QString &ruta)
{
    return conCarpeta(raiz + u"/media/"_s + ruta);
}

void Contexto::falla(const QString &motivo)
{
    const std::lock_guard cerrojo(m_cerrojo);
    fallos << motivo;
}

QString Contexto::escribe(const QString &ruta, const QByteArray &datos)
{
    QFile fichero(conCarpeta(ruta));
    if (!fichero.open(QIODevice::WriteOnly) || fichero.write(datos) != datos.size() || !fichero.flush())
        falla(u"No se pudo escribir %1: %2"_s.arg(ruta, fichero.errorString()));
    return ruta;
}

void Contexto::recoge(const Base &base)
{
    if (!base.motivo().isEmpty())
        falla(base.motivo());
}

} // namespace simulado
