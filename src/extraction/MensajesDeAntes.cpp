#include "extraction/MensajesDeAntes.h"

#include <QFile>
#include <QSet>

#include <vector>

namespace vellora::Extraccion
{

namespace
{

constexpr auto cola = "(de copias anteriores)";

QByteArray leerTodo(const Descriptor &descriptor)
{
    QFile fichero;
    return descriptor && fichero.open(*descriptor, QIODevice::ReadOnly) ? fichero.readAll() : QByteArray();
}

/// One message as it is told from others: how its further lines are indented was not always the same.
QByteArray esencia(QByteArrayView mensaje)
{
    QByteArray junta;
    for (const auto &linea : mensaje.toByteArray().split('\n')) {
        if (const auto suya = linea.trimmed(); !suya.isEmpty())
            junta += suya + '\n';
    }
    return junta;
}

bool empieza(QByteArrayView linea)
{
    return linea.startsWith('[') && linea.indexOf(']') > 0;
}

/// The messages of a file; what stands before the first one counts as one.
std::vector<QByteArrayView> mensajesDe(QByteArrayView texto)
{
    std::vector<QByteArrayView> mensajes;
    qsizetype principio = 0;
    for (qsizetype sitio = 0; sitio < texto.size();) {
        const auto salto = texto.indexOf('\n', sitio);
        const auto fin = salto < 0 ? texto.size() : salto;
        if (sitio > principio && empieza(texto.sliced(sitio, fin - sitio))) {
            mensajes.push_back(texto.sliced(principio, sitio - 1 - principio));
            principio = sitio;
        }
        sitio = fin + 1;
    }
    if (principio < texto.size())
        mensajes.push_back(texto.sliced(principio));
    return mensajes;
}

/// Those of `antes` that stand in none of the others.
std::vector<QByteArrayView> losQueFaltan(const QByteArray &antes, const QByteArray &ahora, const QByteArray &guardados)
{
    QSet<QByteArray> conocidos;
    for (const auto *texto : {&ahora, &guardados}) {
        for (const auto mensaje : mensajesDe(*texto))
            conocidos.insert(esencia(mensaje));
    }
    std::vector<QByteArrayView> faltan;
    for (const auto mensaje : mensajesDe(antes)) {
        const auto suya = esencia(mensaje);
        if (suya.isEmpty() || conocidos.contains(suya))
            continue;
        conocidos.insert(suya);
        faltan.push_back(mensaje);
    }
    return faltan;
}

} // namespace

bool guardarMensajesDeAntes(CarpetaDeDestino &carpeta, EscritorDeTexto &nuevo, int numero)
{
    const auto antes = leerTodo(carpeta.leer(nuevo.nombre()));
    if (antes.isEmpty())
        return true;
    const auto descriptor = nuevo.releer();
    if (!descriptor)
        return false;
    const auto ahora = leerTodo(descriptor);
    // The common case by far: nothing is new, or something came at the end.
    if (ahora.startsWith(antes) && (ahora.size() == antes.size() || ahora[antes.size()] == '\n'))
        return true;
    const auto relativa = EscritorDeTexto::conCola(nuevo.nombre(), cola);
    const auto guardados = leerTodo(carpeta.leer(relativa));
    const auto faltan = losQueFaltan(antes, ahora, guardados);
    if (faltan.empty())
        return true;
    EscritorDeTexto escritor(carpeta, relativa, numero);
    escritor << guardados;
    bool primero = guardados.isEmpty();
    for (const auto mensaje : faltan) {
        if (!std::exchange(primero, false))
            escritor << QByteArrayView("\n");
        escritor << mensaje;
    }
    return escritor.cerrar();
}

} // namespace vellora::Extraccion
