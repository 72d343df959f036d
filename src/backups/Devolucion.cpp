#include "backups/Devolucion.h"

#include "backups/CarpetaDeCopias.h"
#include "backups/Copias.h"
#include "backups/CopiasAnteriores.h"
#include "backups/RestaurarCopia.h"
#include "core/Formato.h"
#include "core/Plist.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "session/Carpetas.h"
#include "session/Consentimiento.h"
#include "session/Modelo.h"

#include <QDir>
#include <QFileInfo>
#include <QVariantMap>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qsizetype minimoDeUdid = 21; // shorter names are no phone's

QString cuando(const QDateTime &fecha)
{
    return Formato::espanol().toString(fecha, u"d 'de' MMMM 'de' yyyy, H:mm"_s);
}

/// The backup of that folder; absent when there is none.
std::optional<CopiaParaDevolver> mirar(const QString &carpetaCopias, const QString &udid, const QString &deQuien)
{
    CopiaParaDevolver copia{carpetaCopias, udid, deQuien, {}, 0, {}};
    const auto estado = Catalogo::estadoDe(copia.carpeta());
    if (estado.clase == Catalogo::Clase::NoHay || !estado.fecha)
        return {};
    copia.fecha = *estado.fecha;
    copia.clase = estado.clase;
    copia.bytes = CarpetaDeCopias::bytesEnDisco({copia.carpeta()});
    if (const auto info = Plist::leer(copia.carpeta() + u"/Info.plist"_s)) {
        if (const auto nombre = info->raiz()["Device Name"].texto(); nombre && !nombre->isEmpty())
            copia.deQuien = *nombre;
    }
    return copia;
}

void mirarCarpeta(const QString &carpetaCopias, QList<CopiaParaDevolver> &halladas)
{
    const auto deQuien = QDir(QFileInfo(carpetaCopias).path()).dirName();
    const auto nombres = QDir(carpetaCopias).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const auto &udid : nombres) {
        if (udid.size() < minimoDeUdid)
            continue;
        if (const auto copia = mirar(carpetaCopias, udid, deQuien))
            halladas << *copia;
        const auto anteriores = CopiasAnteriores::listar(carpetaCopias, udid);
        for (const auto &anterior : anteriores) {
            if (const auto copia = mirar(anterior.carpetaCopias, anterior.udid, deQuien))
                halladas << *copia;
        }
    }
}

QString enQueEstado(Catalogo::Clase clase)
{
    switch (clase) {
    case Catalogo::Clase::Entera:
        return u"completa y comprobada"_s;
    case Catalogo::Clase::SinComprobar:
        return u"no comprobada"_s;
    default:
        return u"a medias: no se puede devolver"_s;
    }
}

} // namespace

QList<CopiaParaDevolver> copiasParaDevolver(const QStringList &carpetas, const QString &udid)
{
    QList<CopiaParaDevolver> halladas;
    for (const auto &una : carpetas)
        mirarCarpeta(una, halladas);
    std::stable_sort(halladas.begin(), halladas.end(), [&](const CopiaParaDevolver &a, const CopiaParaDevolver &b) {
        return a.udid == b.udid || (a.udid != udid && b.udid != udid) ? a.fecha > b.fecha : a.udid == udid;
    });
    return halladas;
}

std::optional<QString> porQueNoSeDevuelve(const CopiaParaDevolver &copia)
{
    const auto estado = Catalogo::estadoDe(copia.carpeta());
    if (estado.clase == Catalogo::Clase::NoHay || estado.fecha != copia.fecha)
        return u"No he devuelto nada: esa copia ya no es la que te enseñé. Vuelve a elegirla."_s;
    if (estado.clase == Catalogo::Clase::Inacabada)
        return u"No he devuelto nada: esa copia está a medias, y el iPhone quedaría a medias también."_s;
    if (Copias::hayOtraCopiaEnMarcha() ||
        !CarpetaDeCopias::tomar(CopiasAnteriores::carpetaQueSeToma(copia.carpetaCopias), 0))
        return u"No he devuelto nada: otro programa está trabajando ahora mismo con esa copia. Espera a que acabe."_s;
    return {};
}

Devolucion::Devolucion(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre)
    : QObject(padre), modelo(elModelo), consentimiento(elConsentimiento)
{
    connect(&modelo, &Modelo::cambioDeSesion, this, [this] {
        if (eligiendo() && (!modelo.seleccionado() || modelo.seleccionado()->id != udid))
            cerrar();
    });
}

void Devolucion::pedir()
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido || modelo.tarea().enMarcha())
        return;
    udid = elegido->id;
    paraQuien_ = elegido->nombre;
    copias_.clear();
    mirando_ = true;
    emit cambio();
    enSegundoPlano(
        this, [carpetas = Carpetas::deCopias(), suyo = udid] { return copiasParaDevolver(carpetas, suyo); },
        [this, suyo = udid](const QList<CopiaParaDevolver> &lista) {
            if (eligiendo() && udid == suyo)
                halladas(lista);
        });
}

void Devolucion::halladas(const QList<CopiaParaDevolver> &lista)
{
    mirando_ = false;
    copias_ = lista;
    emit cambio();
    if (lista.isEmpty()) {
        cerrar();
        return consentimiento.avisar(u"No hay ninguna copia de seguridad que devolver."_s);
    }
    // With one, of this very phone, there is nothing to choose.
    if (lista.size() == 1 && lista.first().udid == udid)
        elegir(0);
}

void Devolucion::elegir(int fila)
{
    if (fila < 0 || fila >= copias_.size())
        return;
    const auto copia = copias_[fila];
    const auto suyo = udid;
    cerrar();
    preguntar(copia, suyo);
}

void Devolucion::cerrar()
{
    udid.clear();
    paraQuien_.clear();
    copias_.clear();
    mirando_ = false;
    emit cambio();
}

void Devolucion::preguntar(const CopiaParaDevolver &copia, const QString &suUdid)
{
    if (copia.clase == Catalogo::Clase::Inacabada)
        return consentimiento.avisar(u"Esa copia está a medias: se cortó antes de terminar, y no se puede devolver."_s);
    auto texto =
        u"Es la copia de «%1» del %2 (%3).\n\n"_s.arg(copia.deQuien, cuando(copia.fecha), Formato::tamano(copia.bytes));
    if (copia.udid != suUdid)
        texto +=
            u"⚠️ Es la copia de OTRO iPhone. Este quedará como estaba aquel: con sus datos, sus cuentas y sus "
            "ajustes. Sirve para estrenar un iPhone.\n\n"_s;
    if (copia.clase != Catalogo::Clase::Entera)
        texto += u"⚠️ No está comprobada: no sé si está entera.\n\n"_s;
    texto += u"Esto SUSTITUYE lo que hay ahora en el iPhone por lo que había cuando se hizo la copia. Lo que sea más "
             "nuevo que la copia se pierde.\n\nEl iPhone se reiniciará y tardará un buen rato. No desconectes el "
             "cable.\n\nSolo tiene sentido si has perdido los datos o estás estrenando un iPhone."_s;
    consentimiento.plantear({u"¿Devolver la copia al iPhone?"_s, texto, u"Devolver la copia"_s, u"No hacer nada"_s,
                             Cerradura::DevolverCopia, suUdid, [copia] { return porQueNoSeDevuelve(copia); },
                             [this, copia, suUdid] {
                                 restaurarCopia(modelo.tarea(), suUdid, copia.carpetaCopias, copia.udid);
                             }});
}

QVariantList Devolucion::filas() const
{
    QVariantList lista;
    for (const auto &una : copias_) {
        const auto titulo =
            una.udid == udid ? cuando(una.fecha) : u"%1 · de «%2»"_s.arg(cuando(una.fecha), una.deQuien);
        const auto detalle = u"%1 · %2%3"_s.arg(Formato::tamano(una.bytes), enQueEstado(una.clase),
                                                una.udid == udid ? QString() : u" · de otro iPhone"_s);
        lista << QVariantMap{
            {u"titulo"_s, titulo}, {u"detalle"_s, detalle}, {u"vale"_s, una.clase != Catalogo::Clase::Inacabada}};
    }
    return lista;
}

} // namespace vellora
