#include "extraction/Conversaciones.h"

#include "core/SegundoPlano.h"
#include "extraction/ExportarPDF.h"
#include "extraction/Textos.h"

#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// The hour of "dd/MM/yyyy HH:mm"; a date of another form is shown whole.
QString horaDe(const QString &cuando)
{
    constexpr qsizetype entera = 16;
    return cuando.size() == entera && cuando[10] == u' ' ? cuando.sliced(11) : cuando;
}

/// In place of a file of that name, once everything is on the disk.
bool escribirEntero(const QString &fichero, const QByteArray &bytes)
{
    QSaveFile salida(fichero);
    return salida.open(QIODevice::WriteOnly) && salida.write(bytes) == bytes.size() && salida.commit();
}

/// The file as it is; on its own name that is done already.
bool copiarA(const QString &origen, const QString &destino)
{
    QFile entrada(origen);
    if (QFileInfo(origen) == QFileInfo(destino))
        return entrada.exists();
    QSaveFile salida(destino);
    if (!entrada.open(QIODevice::ReadOnly) || !salida.open(QIODevice::WriteOnly))
        return false;
    constexpr qint64 trozo = 1 << 20;
    while (!entrada.atEnd()) {
        const auto bytes = entrada.read(trozo);
        if (bytes.isEmpty() || salida.write(bytes) != bytes.size())
            return false;
    }
    return salida.commit();
}

QString enLineas(const Mensajes &mensajes)
{
    QStringList lineas;
    lineas.reserve(mensajes.cuantos());
    for (qsizetype i = 0; i < mensajes.cuantos(); ++i) {
        const auto uno = mensajes.mensaje(i);
        lineas << uno.cuando + u' ' + (uno.mio ? u"Yo"_s : uno.quien) + u": "_s + uno.texto;
    }
    return lineas.join(u'\n');
}

} // namespace

void ModeloDeMensajes::poner(const Mensajes &nuevos)
{
    beginResetModel();
    mensajes = nuevos;
    endResetModel();
}

int ModeloDeMensajes::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(mensajes.cuantos());
}

QVariant ModeloDeMensajes::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto fila = indice.row();
    if (papel == PapelDia) {
        const auto dia = mensajes.dia(fila);
        return fila > 0 && dia == mensajes.dia(fila - 1) ? QString() : dia;
    }
    const auto uno = mensajes.mensaje(fila);
    switch (papel) {
    case PapelMio:
        return uno.mio;
    case PapelQuien:
        return uno.quien;
    case PapelHora:
        return horaDe(uno.cuando);
    case PapelTexto:
        return uno.texto;
    case PapelColor:
        return static_cast<int>(qHash(uno.quien, 0) % colores);
    default:
        return {};
    }
}

QHash<int, QByteArray> ModeloDeMensajes::roleNames() const
{
    return {{PapelMio, "mio"},     {PapelQuien, "quien"}, {PapelHora, "hora"},
            {PapelTexto, "texto"}, {PapelDia, "dia"},     {PapelColor, "tono"}};
}

Conversaciones::Conversaciones(QObject *padre) : QAbstractListModel(padre) {}

void Conversaciones::abrir(const QString &carpeta, const QString &titulo, const QString &fichero)
{
    ++vuelta;
    titulo_ = titulo;
    busqueda_.clear();
    mensaje_.clear();
    pdf.clear();
    cargando_ = false;
    haciendoPdf_ = false;
    chats.clear();
    elegido_.reset();
    for (const auto &uno : ficherosDeTexto(carpeta)) {
        if (uno == fichero)
            elegido_ = chats.size();
        chats.append({nombreDeChat(uno), uno, {}, false});
    }
    if (!chats.isEmpty() && !elegido_)
        elegido_ = 0;
    mostrar();
    cargarChat();
}

void Conversaciones::cargarChat()
{
    const bool listo = !elegido_ || chats[*elegido_].cargada;
    cargando_ = !listo;
    enVista.poner(elegido_ && listo ? chats[*elegido_].mensajes : Mensajes());
    emit cambio();
    if (listo) {
        emit chatCargado();
        return;
    }
    const auto cual = *elegido_;
    const auto trabajo = [fichero = chats[cual].fichero] {
        return Mensajes::leer(fichero);
    };
    enSegundoPlano(this, trabajo, [this, cual, suya = vuelta](const Mensajes &leidos) {
        if (suya != vuelta)
            return;
        chats[cual].mensajes = leidos;
        chats[cual].cargada = true;
        if (elegido_ == cual)
            cargarChat();
    });
}

void Conversaciones::elegir(int fila)
{
    if (fila < 0 || fila >= visibles.size() || elegido_ == visibles[fila])
        return;
    elegido_ = visibles[fila];
    mensaje_.clear();
    cargarChat();
}

int Conversaciones::filaElegida() const
{
    return elegido_ ? static_cast<int>(visibles.indexOf(*elegido_)) : -1;
}

QString Conversaciones::nombre() const
{
    return elegido_ ? chats[*elegido_].nombre : QString();
}

int Conversaciones::cuantos() const
{
    return elegido_ ? static_cast<int>(chats[*elegido_].mensajes.cuantos()) : 0;
}

void Conversaciones::ponBusqueda(const QString &texto)
{
    if (texto == busqueda_)
        return;
    busqueda_ = texto;
    mostrar();
}

QList<Conversacion> Conversaciones::filtrados() const
{
    QList<Conversacion> quedan;
    for (const auto cual : visibles)
        quedan << chats[cual];
    return quedan;
}

void Conversaciones::mostrar()
{
    beginResetModel();
    visibles.clear();
    for (qsizetype i = 0; i < chats.size(); ++i) {
        if (chats[i].nombre.contains(busqueda_, Qt::CaseInsensitive))
            visibles << i;
    }
    endResetModel();
    emit cambio();
}

void Conversaciones::avisar(const QString &texto)
{
    mensaje_ = texto;
    emit cambio();
}

void Conversaciones::copiarChat()
{
    if (!elegido_)
        return;
    const auto trabajo = [mensajes = chats[*elegido_].mensajes] {
        return enLineas(mensajes);
    };
    enSegundoPlano(this, trabajo, [this](const QString &texto) {
        QGuiApplication::clipboard()->setText(texto);
        avisar(u"Conversación copiada. Pégala donde quieras."_s);
    });
}

void Conversaciones::guardarChat(const QString &fichero)
{
    if (!elegido_)
        return;
    const auto trabajo = [origen = chats[*elegido_].fichero, fichero] {
        return copiarA(origen, fichero);
    };
    enSegundoPlano(this, trabajo, [this](bool bien) { avisar(bien ? u"Guardado."_s : u"No se pudo guardar."_s); });
}

void Conversaciones::exportarPDF()
{
    if (!elegido_ || haciendoPdf_)
        return;
    haciendoPdf_ = true;
    mensaje_.clear();
    emit cambio();
    const auto trabajo = [mensajes = chats[*elegido_].mensajes, titulo = chats[*elegido_].nombre] {
        return ExportarPDF::pdf(mensajes, titulo);
    };
    enSegundoPlano(this, trabajo, [this, suya = vuelta](const std::optional<QByteArray> &bytes) {
        if (suya != vuelta)
            return;
        haciendoPdf_ = false;
        pdf = bytes.value_or(QByteArray());
        avisar(bytes ? QString() : u"No pude generar el PDF."_s);
        if (bytes)
            emit pdfHecho();
    });
}

void Conversaciones::guardarPdf(const QString &fichero)
{
    const auto trabajo = [bytes = std::exchange(pdf, {}), fichero] {
        return !bytes.isEmpty() && escribirEntero(fichero, bytes);
    };
    enSegundoPlano(this, trabajo, [this](bool bien) {
        avisar(bien ? u"PDF guardado con formato de chat."_s : u"No pude guardar el PDF."_s);
    });
}

int Conversaciones::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(visibles.size());
}

QVariant Conversaciones::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto &nombre = chats[visibles[indice.row()]].nombre;
    if (papel == PapelNombre)
        return nombre;
    if (papel == PapelInicial)
        return recortar(nombre.trimmed(), 1).toUpper();
    return {};
}

QHash<int, QByteArray> Conversaciones::roleNames() const
{
    return {{PapelNombre, "chat"}, {PapelInicial, "inicial"}};
}

} // namespace vellora
