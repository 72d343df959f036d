#include "extraction/Extraccion.h"

#include "core/EscritorDeTexto.h"
#include "core/Vuelta.h"
#include "extraction/Renglones.h"

#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

/// The database with what SQLite keeps beside it, to be changed by its owner whatever the phone's permissions were.
bool copiarBase(const QString &fichero, const QString &copia)
{
    constexpr auto suyos = QFile::ReadOwner | QFile::WriteOwner;
    if (!QFile::copy(fichero, copia) || !QFile::setPermissions(copia, suyos))
        return false;
    for (const auto &cola : {u"-wal"_s, u"-shm"_s}) {
        if (QFile::copy(fichero + cola, copia + cola))
            QFile::setPermissions(copia + cola, suyos);
    }
    return true;
}

} // namespace

void BaseDelTelefono::porCadaFila(const char *consulta, const char *orden, const PorFila &fila) const
{
    bool alguna = false;
    const auto hacer = [&](const Fila &una) {
        alguna = true;
        fila(una);
        return Vuelta::seguimos();
    };
    const bool entera = base.porCadaFila((QByteArray(consulta) + ' ' + orden).constData(), hacer);
    if (!entera && !alguna)
        base.porCadaFila(consulta, hacer);
}

QSet<QByteArray> BaseDelTelefono::columnas(const char *tabla) const
{
    constexpr int suNombre = 1;
    QSet<QByteArray> nombres;
    base.porCadaFila((QByteArray("PRAGMA table_info(") + tabla + ')').constData(), [&](const Fila &fila) {
        nombres.insert(fila.utf8(suNombre).toByteArray());
        return true;
    });
    return nombres;
}

bool BaseDelTelefono::hay(const char *consulta) const
{
    bool alguna = false;
    base.porCadaFila(consulta, [&](const Fila &) {
        alguna = true;
        return false;
    });
    return alguna;
}

std::optional<BaseDelTelefono> abrirPublico(const QString &fichero)
{
    if (!QFileInfo(fichero).isFile())
        return {};
    // Without a log there are no latest changes to take in, and what is only read needs no copy.
    if (QFileInfo(fichero + u"-wal"_s).size() == 0) {
        if (auto directa = BaseDeDatos::abrir(fichero))
            return BaseDelTelefono(*std::move(directa), {});
    }
    if (auto privada = CarpetaDeTrabajo::nueva()) {
        const auto copia = privada->fichero(QFileInfo(fichero).fileName());
        if (copiarBase(fichero, copia)) {
            if (auto base = BaseDeDatos::abrirCopia(copia))
                return BaseDelTelefono(*std::move(base), *std::move(privada));
        }
    }
    Vuelta::danada(QFileInfo(fichero).fileName());
    auto directa = BaseDeDatos::abrir(fichero);
    return directa ? std::optional(BaseDelTelefono(*std::move(directa), {}, true)) : std::nullopt;
}

QString buscarPublico(const QString &nombre, const QString &dentro)
{
    return buscar(nombre, dentro).value(0);
}

void ponerCampo(QByteArray &linea, const Fila &fila, int columna)
{
    const auto principio = linea.size();
    Renglones::ponerEnUno(linea, fila.utf8(columna));
    std::replace(linea.begin() + principio, linea.end(), ';', ',');
}

qint64 escribirTabla(const Tabla &tabla, const QStringList &bases, const QString &a)
{
    auto carpeta = CarpetaDeDestino::abrir(a);
    if (!carpeta)
        return 0;
    std::optional<EscritorDeTexto> escritor;
    QByteArray linea;
    qint64 filas = 0;
    const auto ponerFila = [&](const Fila &fila) {
        if (!escritor)
            escritor.emplace(*carpeta, tabla.fichero.toUtf8()) << tabla.cabecera;
        linea.resize(0);
        tabla.linea(linea, fila);
        *escritor << linea;
        ++filas;
    };
    bool entera = true;
    for (const auto &fichero : bases) {
        const auto base = abrirPublico(fichero);
        const auto consulta = base ? tabla.consulta(*base) : QByteArray();
        if (!consulta.isEmpty())
            base->porCadaFila(consulta.constData(), tabla.orden, ponerFila);
        entera = entera && !(base && base->danada());
    }
    return escritor && escritor->cerrar(entera) ? filas : 0;
}

QStringList todo(const QString &desde, const QString &a)
{
    CarpetaDeDestino::limpiar(a);
    // Results share their bytes with unpacked files: what is not on the disk yet must get there first.
    if (const auto desempaquetada = CarpetaDeDestino::abrir(desde))
        desempaquetada->asentar();
    QStringList resumen;
    for (const auto extractor : {&mensajes, &whatsapp, &notasDeVoz, &contactos, &llamadas, &notas, &calendario,
                                 &recordatorios, &safari, &salud, &buzonDeVoz}) {
        if (!Vuelta::seguimos())
            break;
        if (const auto linea = extractor(desde, a))
            resumen << *linea;
    }
    return resumen;
}

} // namespace vellora::Extraccion
