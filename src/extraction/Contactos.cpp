#include "extraction/Contactos.h"

#include "backups/Catalogo.h"
#include "core/Ejecutor.h"
#include "core/Motor.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "extraction/Contactar.h"
#include "extraction/Extraccion.h"
#include "session/Modelo.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr double segundosParaSacar = 900;
const auto sinPermiso = u"El Mac no me deja tocar los Contactos. Actívalo en Ajustes del Sistema › Privacidad."_s;
const auto sinPermisoAlGuardar = u"El Mac no me deja tocar los Contactos. Permíteselo en Ajustes del Sistema › "
                                 "Privacidad y seguridad › Contactos."_s;

struct Sitios {
    QString udid;
    QString copias;
    QString datos;
};

/// What was taken out before the last backup tells of people as they were then.
bool esViejo(const Sitios &sitios)
{
    const auto base = Extraccion::buscarPublico(u"AddressBook.sqlitedb"_s, sitios.datos);
    const auto deLaCopia = Catalogo::fechaDe(sitios.copias + u'/' + sitios.udid);
    return base.isEmpty() || (deLaCopia && QFileInfo(base).fileTime(QFile::FileMetadataChangeTime) < *deLaCopia);
}

/// The reason when it could not be taken out.
std::optional<QString> sacarAgenda(const Sitios &sitios)
{
    // The log of the former database would be taken for that of the one that comes.
    for (const auto &base : {u"AddressBook.sqlitedb"_s, u"AddressBookImages.sqlitedb"_s}) {
        for (const auto &cola : {u"-wal"_s, u"-shm"_s}) {
            for (const auto &sobra : Extraccion::buscar(base + cola, sitios.datos))
                QFile::remove(sobra);
        }
    }
    const auto &motor = Motor::lanzamiento();
    if (!motor)
        return u"No encuentro el motor del iPhone dentro de la app."_s;
    const auto dicho = Ejecutor::rapido(
        motor->ejecutable,
        motor->argumentos + QStringList{u"extraer"_s, sitios.udid, sitios.copias, sitios.datos, u"agenda"_s},
        segundosParaSacar);
    auto fallo = std::optional(u"No se pudo abrir la copia."_s);
    for (const auto &linea : dicho.split(u'\n')) {
        const auto aviso = Motor::interpretar(linea);
        if (aviso && aviso->tipo == "error"_L1)
            return aviso->texto("motivo"_L1).value_or(*fallo);
        if (aviso && aviso->tipo == "fin"_L1)
            fallo.reset();
    }
    return fallo;
}

/// Why nobody came out of what has been taken out.
QString porQueNadie(const QString &datos)
{
    const auto fichero = Extraccion::buscarPublico(u"AddressBook.sqlitedb"_s, datos);
    if (fichero.isEmpty())
        return u"La copia no trae la agenda del iPhone."_s;
    const auto base = Extraccion::abrirPublico(fichero);
    return base && !base->columnas("ABPerson").isEmpty() ? u"No he encontrado contactos en la copia."_s
                                                         : u"La agenda que trae la copia no se puede leer."_s;
}

bool cabeEn(const Contacto &contacto, const QString &busqueda)
{
    const auto lleva = [&busqueda](const QString &texto) {
        return texto.contains(busqueda, Qt::CaseInsensitive);
    };
    return lleva(contacto.comoSeLlama()) ||
           std::any_of(contacto.telefonos.begin(), contacto.telefonos.end(),
                       [&](const QString &numero) {
                           return numero.contains(busqueda) || Contactar::limpiarNumero(numero).contains(busqueda);
                       }) ||
           std::any_of(contacto.correos.begin(), contacto.correos.end(), lleva);
}

/// The one field of a form in the place of the first of the list.
QStringList conPrimero(QStringList lista, const QString &primero)
{
    if (!lista.isEmpty())
        lista.removeFirst();
    if (!primero.isEmpty())
        lista.prepend(primero);
    return lista;
}

} // namespace

Contactos::Contactos(Modelo &elModelo, EsImagen elEsImagen, QObject *padre)
    : QAbstractListModel(padre), modelo(elModelo), esImagen(elEsImagen)
{
    connect(&modelo.tarea(), &Tarea::acabada, this, &Contactos::seguirEsperando, Qt::QueuedConnection);
}

void Contactos::seguirEsperando()
{
    if (!std::exchange(esperando_, false))
        return;
    cargando_ = false;
    leer();
}

Contactos::Leido Contactos::leerDe(const QString &udid, const QString &copias, const QString &datos, EsImagen esImagen)
{
    const Sitios sitios{udid, copias, datos};
    Leido leido;
    if (esViejo(sitios))
        leido.fallo = sacarAgenda(sitios);
    leido.lista = Extraccion::leerContactos(datos);
    leido.fotos = Extraccion::fotosDeContactos(datos);
    leido.fotos.removeIf([esImagen](const auto &foto) { return !esImagen(foto.value()); });
    if (leido.lista.isEmpty() && !leido.fallo)
        leido.fallo = porQueNadie(datos);
    return leido;
}

void Contactos::leer()
{
    if (cargando_)
        return;
    yaMire_ = true;
    aviso_.clear();
    const auto &telefono = modelo.seleccionado();
    const auto udid = telefono ? std::optional(telefono->id) : Catalogo::udidDeLaCopia(modelo.carpetaCopias());
    if (!udid) {
        motivo_ = u"No hay ninguna copia de seguridad."_s;
        emit cambio();
        return;
    }
    motivo_.reset();
    cargando_ = true;
    esperando_ = modelo.tarea().enMarcha();
    emit cambio();
    if (esperando_)
        return;
    const auto trabajo = [udid = *udid, copias = modelo.carpetaCopias(), datos = modelo.carpetaDatos(),
                          esImagen = esImagen] {
        return leerDe(udid, copias, datos, esImagen);
    };
    enSegundoPlano(this, trabajo, [this, suya = ++vuelta](const Leido &leido) {
        if (suya == vuelta)
            aplicar(leido);
    });
}

void Contactos::olvidar()
{
    ++vuelta;
    cargando_ = false;
    esperando_ = false;
    yaMire_ = false;
    lista_.clear();
    elegido_.reset();
    busqueda_.clear();
    aviso_.clear();
    motivo_.reset();
    hoja_ = SinHoja;
    mostrar();
}

void Contactos::aplicar(const Leido &leido)
{
    cargando_ = false;
    lista_ = leido.lista;
    {
        const QMutexLocker uno(&cerrojo);
        fotos = leido.fotos;
    }
    motivo_ = lista_.isEmpty() ? leido.fallo : std::nullopt;
    if (!lista_.isEmpty() && leido.fallo)
        aviso_ = u"Estos contactos son de una copia anterior. "_s + *leido.fallo;
    const auto mismo = std::find_if(lista_.cbegin(), lista_.cend(),
                                    [this](const Contacto &uno) { return elegido_ && uno.id == elegido_->id; });
    elegido_ = mismo == lista_.cend() ? std::nullopt : std::optional(*mismo);
    mostrar();
}

QList<Contacto> Contactos::filtrados() const
{
    if (busqueda_.isEmpty())
        return lista_;
    QList<Contacto> quedan;
    std::copy_if(lista_.begin(), lista_.end(), std::back_inserter(quedan),
                 [this](const Contacto &uno) { return cabeEn(uno, busqueda_); });
    return quedan;
}

void Contactos::mostrar()
{
    beginResetModel();
    visibles = filtrados();
    endResetModel();
    emit cambio();
}

void Contactos::ponBusqueda(const QString &texto)
{
    if (texto == busqueda_)
        return;
    busqueda_ = texto;
    mostrar();
}

void Contactos::elegir(int fila)
{
    elegido_ = fila >= 0 && fila < visibles.size() ? std::optional(visibles[fila]) : std::nullopt;
    aviso_.clear();
    emit cambio();
}

int Contactos::filaElegida() const
{
    for (qsizetype i = 0; elegido_ && i < visibles.size(); ++i) {
        if (visibles[i].id == elegido_->id)
            return static_cast<int>(i);
    }
    return -1;
}

QByteArray Contactos::foto(qint64 id) const
{
    const QMutexLocker uno(&cerrojo);
    return fotos.value(id);
}

QString Contactos::direccionDeFoto(qint64 id) const
{
    const QMutexLocker uno(&cerrojo);
    return fotos.contains(id) ? u"image://contactos/%1/%2"_s.arg(vuelta).arg(id) : QString();
}

void Contactos::avisar(const QString &texto)
{
    aviso_ = texto;
    emit cambio();
}

void Contactos::exportar(Formato formato, const QString &fichero)
{
    const auto trabajo = [formato, fichero, lista = lista_] {
        return formato == VCard ? Extraccion::guardarVCard(fichero, lista)
                                : Extraccion::guardarContactosCSV(fichero, lista);
    };
    enSegundoPlano(this, trabajo, [this, cuantos = lista_.size()](bool bien) {
        avisar(bien ? u"Guardados %1 contactos."_s.arg(cuantos) : u"No se pudo guardar."_s);
    });
}

FichaDeAgenda Contactos::comoFicha(const Contacto &contacto) const
{
    return {contacto.nombre, contacto.apellidos, contacto.empresa, contacto.telefonos, contacto.correos};
}

void Contactos::copiarAlMac()
{
    if (!elegido_ || guardando_)
        return;
    guardando_ = true;
    emit cambio();
    const auto trabajo = [ficha = comoFicha(*elegido_), nombre = elegido_->comoSeLlama()] {
        if (!AgendaDelMac::pedirPermiso())
            return sinPermiso;
        if (AgendaDelMac::yaEsta(ficha))
            return nombre + u" ya estaba en los Contactos del ordenador."_s;
        const auto fallo = AgendaDelMac::guardar(ficha);
        return fallo ? u"No se pudo guardar: "_s + *fallo : nombre + u" guardado en los Contactos del Mac."_s;
    };
    enSegundoPlano(this, trabajo, [this](const QString &aviso) {
        guardando_ = false;
        avisar(aviso);
    });
}

void Contactos::borrarContacto()
{
    if (!elegido_)
        return;
    abrirHoja(SinHoja);
    const auto trabajo = [ficha = comoFicha(*elegido_), nombre = elegido_->comoSeLlama()] {
        if (!AgendaDelMac::pedirPermiso())
            return sinPermiso;
        const auto borrado = AgendaDelMac::borrar(ficha);
        if (borrado.fallo)
            return u"No se pudo borrar: "_s + *borrado.fallo;
        if (borrado.estaba)
            return nombre + u" borrado de la agenda del Mac. Con iCloud, se irá del iPhone."_s;
        return nombre + u" no estaba en la agenda del Mac (solo en la copia del iPhone), así que no hay nada que "
                        "borrar aquí. Para quitarlo del iPhone, bórralo en el teléfono."_s;
    };
    enSegundoPlano(this, trabajo, [this](const QString &aviso) { avisar(aviso); });
}

void Contactos::guardar(bool editar, const QString &nombre, const QString &apellidos, const QString &empresa,
                        const QString &telefono, const QString &correo)
{
    if (guardando_ || (editar && !elegido_))
        return;
    const auto original = editar ? std::optional(comoFicha(*elegido_)) : std::nullopt;
    auto nueva = original.value_or(FichaDeAgenda());
    nueva.nombre = nombre.trimmed();
    nueva.apellidos = apellidos.trimmed();
    nueva.empresa = empresa.trimmed();
    nueva.telefonos = conPrimero(nueva.telefonos, telefono.trimmed());
    nueva.correos = conPrimero(nueva.correos, correo.trimmed());
    guardando_ = true;
    falloAlGuardar_.clear();
    emit cambio();
    const auto trabajo = [original, nueva]() -> std::optional<QString> {
        if (!AgendaDelMac::pedirPermiso())
            return sinPermisoAlGuardar;
        return original ? AgendaDelMac::actualizar(*original, nueva) : AgendaDelMac::guardar(nueva);
    };
    enSegundoPlano(this, trabajo, [this, editar](const std::optional<QString> &fallo) {
        guardando_ = false;
        falloAlGuardar_ = fallo.value_or(QString());
        if (!fallo)
            aviso_ = editar ? u"Contacto actualizado en la agenda del Mac. Con iCloud, el cambio llega al iPhone."_s
                            : u"Contacto creado en la agenda del Mac. Con iCloud encendido, llegará al iPhone."_s;
        if (!fallo)
            hoja_ = SinHoja;
        emit cambio();
    });
}

void Contactos::abrirHoja(Hojas cual)
{
    falloAlGuardar_.clear();
    hoja_ = elegido_ || cual == Nuevo ? cual : SinHoja;
    emit cambio();
}

void Contactos::contactar(const QString &como, const QString &conQuien)
{
    if (como == "llamar"_L1)
        Contactar::llamar(conQuien);
    else if (como == "mensaje"_L1)
        Contactar::mensaje(conQuien);
    else if (como == "whatsapp"_L1)
        Contactar::whatsapp(conQuien);
    else if (como == "faceTime"_L1)
        Contactar::faceTime(conQuien);
    else if (como == "correo"_L1)
        Contactar::correo(conQuien);
}

int Contactos::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(visibles.size());
}

QVariant Contactos::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto &uno = visibles[indice.row()];
    switch (papel) {
    case PapelNombre:
        return uno.comoSeLlama();
    case PapelDetalle:
        return uno.telefonos.value(0, uno.correos.value(0, uno.empresa));
    case PapelFoto:
        return direccionDeFoto(uno.id);
    default:
        return {};
    }
}

QHash<int, QByteArray> Contactos::roleNames() const
{
    return {{PapelNombre, "persona"}, {PapelDetalle, "detalle"}, {PapelFoto, "foto"}};
}

} // namespace vellora
