#include "core/CarpetaDeTrabajo.h"
#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/roll/Rutas.h"
#include "images/ImagenReducida.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>
#include <atomic>
#include <mutex>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Decoding keeps a core busy.
constexpr size_t hilos = 2;
// One that is longer is not brought over for a look; the cell stands for it.
constexpr qint64 loMasLargo = 80LL * 1000 * 1000;
constexpr qint64 maximoDeLaDelTelefono = 4LL * 1000 * 1000;
// What the phone made for its smallest grids is a blur in ours.
constexpr int minimoDeLaDelTelefono = 160;

bool bajar(Afc &afc, const FicheroDelCarrete &fichero, QFile &a)
{
    const auto leidos = afc.leer(fichero.ruta, fichero.ficha, [&a](QByteArrayView trozo) {
        return !Interrupcion::pedida() && a.write(trozo.data(), trozo.size()) == trozo.size();
    });
    return leidos && *leidos == fichero.ficha.tamano && a.flush();
}

/// The one that the Photos app keeps of it, "…/Thumbnails/V2/DCIM/100APPLE/IMG_0001.HEIC/5005.JPG"; the number grows
/// with its size.
QImage laDelTelefono(Afc &afc, const FicheroDelCarrete &fichero)
{
    const auto carpeta = QString::fromLatin1(carpetaDeMiniaturas) + u"/V2"_s + fichero.ruta;
    auto nombres = afc.listar(carpeta);
    if (!nombres || nombres->isEmpty())
        return {};
    std::sort(nombres->begin(), nombres->end());
    const auto ruta = carpeta + u'/' + nombres->last();
    const auto ficha = afc.ficha(ruta);
    if (!ficha || ficha->tamano > maximoDeLaDelTelefono)
        return {};
    QByteArray bytes;
    const auto leidos = afc.leer(ruta, *ficha, [&bytes](QByteArrayView trozo) {
        bytes += trozo;
        return true;
    });
    const auto imagen = leidos ? QImage::fromData(bytes) : QImage();
    const auto largo = std::max(imagen.width(), imagen.height());
    if (largo < minimoDeLaDelTelefono)
        return {};
    return largo > ladoDeMiniatura
               ? imagen.scaled(ladoDeMiniatura, ladoDeMiniatura, Qt::KeepAspectRatio, Qt::SmoothTransformation)
               : imagen;
}

QImage laDeLaCopia(const QString &fotos, const FicheroDelCarrete &fichero)
{
    const auto copia = fotos + u'/' + QString::fromUtf8(fichero.relativa);
    const QFileInfo info(copia);
    return info.isFile() && info.size() == fichero.ficha.tamano ? imagenReducida(copia, ladoDeMiniatura) : QImage();
}

QImage laDelFichero(Afc &afc, const FicheroDelCarrete &fichero, const QString &carpeta)
{
    if (fichero.ficha.tamano > loMasLargo)
        return {};
    QTemporaryFile bajado(carpeta + u"/bajado-XXXXXX"_s);
    return bajado.open() && bajar(afc, fichero, bajado) ? imagenReducida(bajado.fileName(), ladoDeMiniatura) : QImage();
}

} // namespace

int miniaturas(const QStringList &argumentos, Avisos &avisar)
{
    const auto &udid = argumentos[0];
    const auto &carpeta = argumentos[3];
    const auto rutas = leerRutas(argumentos[1], RutasAdmitidas::LasQueSeCopian);
    if (!rutas)
        return avisar.error(rutas.motivo());
    if (!QDir().mkpath(carpeta))
        return avisar.error(u"No puedo guardar las miniaturas en %1."_s.arg(carpeta));
    const auto deTrabajo = CarpetaDeTrabajo::nueva(carpeta);
    if (!deTrabajo)
        return avisar.error(deTrabajo.motivo());
    const auto hacer = [&](Conexiones &conexiones) {
        const auto buscadas = buscarRutas(conexiones, *rutas);
        std::atomic<size_t> siguiente = 0;
        std::mutex mutex;
        bool sinTelefono = conexiones.primera().perdido();
        qint64 hechas = 0;
        auto fallidas = static_cast<qint64>(buscadas.perdidos.size());
        avisar.total(static_cast<qint64>(buscadas.ficheros.size()));
        conexiones.repartir(buscadas.ficheros.size(), [&](Afc &afc, size_t) {
            for (auto i = siguiente++; i < buscadas.ficheros.size() && !Interrupcion::pedida() && !afc.perdido();
                 i = siguiente++) {
                const auto &fichero = buscadas.ficheros[i];
                const auto nombre = carpeta + u'/' +
                                    nombreDeMiniatura(udid, fichero.ruta, fichero.ficha.tamano,
                                                      fichero.ficha.modificado.toSecsSinceEpoch());
                bool hecha = QFileInfo::exists(nombre);
                if (!hecha) {
                    auto imagen = laDelTelefono(afc, fichero);
                    if (imagen.isNull())
                        imagen = laDeLaCopia(argumentos[2], fichero);
                    if (imagen.isNull())
                        imagen = laDelFichero(afc, fichero, deTrabajo->ruta());
                    hecha = guardarMiniatura(imagen, nombre);
                }
                const std::lock_guard cerrojo(mutex);
                sinTelefono = sinTelefono || afc.perdido();
                ++(hecha ? hechas : fallidas);
                avisar.progreso(hechas + fallidas);
            }
        });
        if (Interrupcion::pedida())
            return Interrupcion::estado;
        if (hechas + fallidas < static_cast<qint64>(rutas->size()) || sinTelefono)
            return avisar.error(u"El iPhone ha dejado de responder."_s);
        avisar.avisar(u"fin"_s, {{u"hechas"_s, hechas}, {u"fallidas"_s, fallidas}});
        return 0;
    };
    return conElTelefono(udid, avisar, hacer, hilos);
}

} // namespace vellora::motor
