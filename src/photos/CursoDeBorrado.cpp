#include "photos/CursoDeBorrado.h"

#include "core/Formato.h"
#include "core/Tarea.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

QString archivos(qint64 cuantos)
{
    return cuantos == 1 ? u"1 archivo"_s : u"%1 archivos"_s.arg(Formato::entero(cuantos));
}

} // namespace

void CursoDeBorrado::mirar(const Motor::Aviso &aviso)
{
    const auto entero = [&aviso](QLatin1StringView clave) {
        return aviso.entero(clave);
    };
    if (aviso.tipo == "plan"_L1) {
        porBorrar = entero("a_borrar"_L1).value_or(0);
    } else if (aviso.tipo == "total"_L1) {
        porBorrar = entero("n"_L1).value_or(0);
    } else if (aviso.tipo == "progreso"_L1) {
        // Some deletions count in "hechos" those that stay too.
        borrados = entero("copiados"_L1).value_or(entero("hechos"_L1).value_or(borrados));
    } else if (aviso.tipo == "cortado"_L1) {
        borrados = entero("borrados"_L1).value_or(borrados);
        porBorrar = borrados + entero("quedan"_L1).value_or(0);
    } else if (aviso.tipo == "fin"_L1) {
        acabado = true;
    } else if (aviso.tipo == "error"_L1) {
        error = aviso.texto("motivo"_L1).value_or(QString());
    }
}

std::optional<QString> CursoDeBorrado::corte() const
{
    if (acabado)
        return {};
    if (porBorrar == 0)
        return u"No se ha borrado nada"_s;
    const auto quedan = std::max<qint64>(porBorrar - borrados, 0);
    if (borrados == 0)
        return u"No se ha borrado nada: siguen en el iPhone los %1"_s.arg(archivos(quedan));
    return u"Borrado a medias: %1 fuera, quedan %2 en el iPhone. REINICIA EL IPHONE."_s.arg(archivos(borrados),
                                                                                            archivos(quedan));
}

void CursoDeBorrado::cerrar(Tarea &tarea, int codigo, const Resumen &resumen) const
{
    if (const auto frase = corte()) {
        const auto reinicio = u"Hasta que lo reinicies, la app Fotos puede seguir enseñando las que ya no están."_s;
        tarea.ponDetalle(*frase);
        tarea.apunta(*frase);
        if (borrados > 0)
            tarea.apunta(reinicio);
        QStringList partes{borrados > 0 ? *frase + u' ' + reinicio : *frase + u'.'};
        if (!error.isEmpty())
            partes << error;
        if (resumen)
            resumen(partes.join(u"\n\n"_s));
    }
    tarea.cerrar(codigo == 0);
}

LoQueSigue::LoQueSigue(const Motor::Aviso &fin)
    : siguen(fin.entero("siguen_ahi"_L1).value_or(0))
    , sinPrueba(fin.entero("sin_prueba"_L1).value_or(0))
    , sinCopiar(fin.entero("se_quedan"_L1).value_or(0))
    , sinMirar(fin.entero("sin_mirar"_L1).value_or(0))
{
}

QString LoQueSigue::porQueNada() const
{
    QStringList motivos;
    if (sinPrueba > 0)
        motivos << u"la copia de %1 en el ordenador ya no está o no se lee igual"_s.arg(archivos(sinPrueba));
    if (siguen > sinPrueba)
        motivos << u"el iPhone no ha dejado borrar %1"_s.arg(archivos(siguen - sinPrueba));
    if (sinCopiar > 0)
        motivos << u"%1 no están copiados"_s.arg(archivos(sinCopiar));
    if (sinMirar > 0)
        motivos << u"el iPhone no ha dejado mirar todas sus carpetas"_s;
    if (motivos.isEmpty())
        motivos << u"lo que había que borrar ya no estaba en el iPhone"_s;
    return u"No he borrado nada: %1."_s.arg(motivos.join(u"; "_s));
}

} // namespace vellora
