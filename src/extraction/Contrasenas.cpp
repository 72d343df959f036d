#include "extraction/Contrasenas.h"

#include "backups/Catalogo.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "platform/Llavero.h"
#include "platform/Procesos.h"
#include "session/Modelo.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr int milisegundos = 1000;

/// What clipboard managers look for before they keep something.
constexpr auto marcaDeSecreto = "x-kde-passwordManagerHint";

} // namespace

Contrasenas::Contrasenas(Modelo &elModelo, QObject *padre)
    : QAbstractListModel(padre), modelo(elModelo), estado_(u"empezando"_s)
{
    reloj.setSingleShot(true);
    connect(&reloj, &QTimer::timeout, this, &Contrasenas::limpiarPortapapeles);
}

Contrasenas::~Contrasenas()
{
    limpiarPortapapeles();
}

void Contrasenas::leer()
{
    if (modelo.tarea().enMarcha())
        return;
    const auto &telefono = modelo.seleccionado();
    const auto udid = telefono ? std::optional(telefono->id) : Catalogo::udidDeLaCopia(modelo.carpetaCopias());
    mensaje_.clear();
    guardarSecretos();
    if (!udid)
        return aplicar(FalloDeClaves{u"No encuentro ninguna copia de seguridad."_s});
    leerContrasenas(modelo.tarea(), modelo.carpetaCopias(), *udid,
                    [yo = QPointer(this), suya = ++vuelta](const ResultadoClaves &resultado) {
                        if (yo && yo->vuelta == suya)
                            yo->aplicar(resultado);
                    });
}

void Contrasenas::aplicar(const ResultadoClaves &resultado)
{
    claves.clear();
    visibles.clear();
    cerradas_ = 0;
    if (const auto *listas = std::get_if<ClavesListas>(&resultado)) {
        claves = listas->claves;
        cerradas_ = listas->cerradas;
        estado_ = u"listas"_s;
    } else if (const auto *mal = std::get_if<FalloDeClaves>(&resultado)) {
        fallo_ = mal->motivo;
        estado_ = u"fallo"_s;
    } else {
        estado_ = u"sincifrar"_s;
    }
    mostrar();
}

void Contrasenas::olvidar()
{
    ++vuelta;
    claves.clear();
    visibles.clear();
    busqueda_.clear();
    filtro_.clear();
    mensaje_.clear();
    estado_ = u"empezando"_s;
    mostrar();
}

void Contrasenas::mostrar()
{
    beginResetModel();
    ensenadas.clear();
    for (qsizetype i = 0; i < claves.size(); ++i) {
        const auto &una = claves[i];
        const bool cabe =
            (filtro_.isEmpty() || una.tipo == filtro_) && (una.donde.contains(busqueda_, Qt::CaseInsensitive) ||
                                                           una.usuario.contains(busqueda_, Qt::CaseInsensitive));
        if (cabe)
            ensenadas << i;
    }
    endResetModel();
    emit cambio();
}

void Contrasenas::ponBusqueda(const QString &texto)
{
    busqueda_ = texto;
    mostrar();
}

void Contrasenas::ponFiltro(const QString &tipo)
{
    filtro_ = tipo;
    mostrar();
}

void Contrasenas::avisar(const QString &texto)
{
    mensaje_ = texto;
    emit cambio();
}

void Contrasenas::exportar(const QString &fichero)
{
    const auto fallo = exportarContrasenas(claves, fichero);
    avisar(fallo ? u"No se pudo guardar: "_s + *fallo
                 : u"Guardadas %1 contraseñas. El archivo solo lo puedes abrir tú."_s.arg(claves.size()));
}

void Contrasenas::ver(int fila, bool visible)
{
    if (fila < 0 || fila >= ensenadas.size())
        return;
    const auto &id = claves[ensenadas[fila]].id;
    if (visible)
        visibles.insert(id);
    else
        visibles.remove(id);
    emit dataChanged(index(fila), index(fila));
}

void Contrasenas::copiar(int fila)
{
    if (fila < 0 || fila >= ensenadas.size())
        return;
    enElPortapapeles = claves[ensenadas[fila]].clave;
    auto *datos = new QMimeData; // the clipboard's from now on
    datos->setText(enElPortapapeles);
    datos->setData(QString::fromLatin1(marcaDeSecreto), "secret");
    QGuiApplication::clipboard()->setMimeData(datos);
    reloj.start(segundosEnElPortapapeles * milisegundos);
    avisar(u"Copiada. En medio minuto se borra del portapapeles."_s);
}

void Contrasenas::limpiarPortapapeles()
{
    auto *portapapeles = qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr
                             ? QGuiApplication::clipboard()
                             : nullptr;
    if (portapapeles != nullptr && !enElPortapapeles.isEmpty() && portapapeles->text() == enElPortapapeles)
        portapapeles->clear();
    enElPortapapeles.fill(u'\0');
    enElPortapapeles.clear();
}

void Contrasenas::guardarEnElLlavero(int fila)
{
    if (fila < 0 || fila >= ensenadas.size())
        return;
    const auto una = claves[ensenadas[fila]];
    // The store may ask to be unlocked, and waits for the answer.
    const auto trabajo = [una] {
        return Llavero::guardarContrasena(una.donde, una.usuario, una.clave);
    };
    enSegundoPlano(this, trabajo, [this, donde = una.donde](bool bien) {
        avisar(bien ? u"La contraseña de %1 está en el Llavero de este Mac."_s.arg(donde)
                    : u"El Llavero de este Mac no ha guardado la contraseña de %1."_s.arg(donde));
    });
}

int Contrasenas::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(ensenadas.size());
}

QVariant Contrasenas::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto &una = claves[ensenadas[indice.row()]];
    const bool visible = visibles.contains(una.id);
    switch (papel) {
    case PapelDonde:
        return una.donde;
    case PapelTipo:
        return una.comoSeLlama();
    case PapelUsuario:
        return una.usuario;
    case PapelIcono:
        return una.icono();
    case PapelClave:
        return visible ? una.clave : QString();
    case PapelVisible:
        return visible;
    default:
        return {};
    }
}

QHash<int, QByteArray> Contrasenas::roleNames() const
{
    return {{PapelDonde, "donde"}, {PapelTipo, "tipo"},   {PapelUsuario, "usuario"},
            {PapelIcono, "icono"}, {PapelClave, "clave"}, {PapelVisible, "alaVista"}};
}

} // namespace vellora
