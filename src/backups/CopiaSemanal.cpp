#include "backups/CopiaSemanal.h"

#include "backups/Automatico.h"
#include "backups/Catalogo.h"
#include "backups/CopiaDeSeguridad.h"
#include "backups/Copias.h"

#include <QDateTime>

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

CopiaSemanal::CopiaSemanal(const QString &elUdid, const QString &lasCopias, Decir alDecir, Decir alAvisar)
    : udid(elUdid)
    , copias(lasCopias)
    , decir(std::move(alDecir))
    , avisar(std::move(alAvisar))
    , diario(Automatico::carpetaDeApoyo() + u"/copia-semanal.json"_s)
    , tarea(diario)
{
    connect(&tarea, &Tarea::acabada, this, &CopiaSemanal::terminar);
}

bool CopiaSemanal::toca(const QDateTime &ahora) const
{
    const auto estado = Catalogo::estadoDe(copias + u'/' + udid);
    if (estado.clase != Catalogo::Clase::Entera && estado.clase != Catalogo::Clase::SinComprobar)
        return true;
    const auto segundos = estado.fecha->secsTo(ahora);
    constexpr qint64 dia = 86400;
    return segundos < 0 || segundos / dia >= Automatico::diasEntreCopias;
}

void CopiaSemanal::dichoConHora(const QString &texto) const
{
    decir(QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm"_s) + u"  "_s + texto);
}

void CopiaSemanal::empezar()
{
    // Both would fail; the other one is this phone's backup too, or gives it back within hours.
    if (Copias::hayOtraCopiaEnMarcha()) {
        emit acabada(NoToca);
        return;
    }
    dichoConHora(Automatico::fraseDeEmpezar());
    OpcionesDeCopia opciones;
    opciones.modo = CopiaEnCurso::Modo::SobreLaAnterior;
    opciones.sinCifrar = Copias::admiteSinCifrar(udid); // nobody is there to be asked
    copiaDeSeguridad(tarea, udid, copias, opciones);
    if (!tarea.enMarcha())
        terminar(false);
}

void CopiaSemanal::cancelar()
{
    if (tarea.enMarcha())
        tarea.cancelar();
}

void CopiaSemanal::terminar(bool bien)
{
    for (const auto &linea : tarea.registro())
        decir(linea);
    if (!bien) {
        dichoConHora(Automatico::fraseDeFallo());
        avisar(u"No pude hacer la copia. Desbloquea el iPhone y déjalo conectado."_s);
    } else if (Catalogo::estadoDe(copias + u'/' + udid).clase == Catalogo::Clase::Entera) {
        dichoConHora(Automatico::fraseDeBien());
        avisar(u"Tu iPhone ya tiene copia de seguridad al día."_s);
    } else {
        dichoConHora(Automatico::fraseDeSinComprobar());
        avisar(u"Hay una copia nueva de tu iPhone, pero no he podido comprobarla."_s);
    }
    emit acabada(bien ? Bien : Mal);
}

} // namespace vellora
