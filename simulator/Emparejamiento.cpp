#include "Emparejamiento.h"

#include "Identidad.h"
#include "Plist.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace simulado
{

Emparejamiento::Emparejamiento(const AjustesTelefono &ajustes, std::shared_ptr<const Identidad> identidad,
                               const QString &carpeta)
    : udid_(ajustes.udid)
    , ruta_(carpeta + u'/' + ajustes.udid + ".plist"_L1)
    , identidad_(std::move(identidad))
    , confianza_(ajustes.confianza)
{
}

void Emparejamiento::cargar(const QString &wifi)
{
    wifi_ = wifi;
    if (confianza_ != Confianza::Si) {
        QFile::remove(ruta_);
        return;
    }
    QFile fichero(ruta_);
    if (fichero.open(QIODevice::ReadOnly))
        registro_ = fichero.readAll();
    const QString host = leerPlist(registro_).value_or(QVariant()).toMap()[u"HostID"_s].toString();
    if (host.isEmpty())
        crearRegistro();
    else
        hosts_.insert(host);
}

void Emparejamiento::crearRegistro()
{
    const QVariantMap registro = identidad_->registro(udid_, wifi_);
    {
        const std::lock_guard cerrojo(mutex_);
        hosts_.insert(registro[u"HostID"_s].toString());
    }
    guardarRegistro(plistXml(registro));
}

QByteArray Emparejamiento::registro() const
{
    const std::lock_guard cerrojo(mutex_);
    return registro_;
}

void Emparejamiento::guardarRegistro(const QByteArray &registro)
{
    const std::lock_guard cerrojo(mutex_);
    registro_ = registro;
    QDir().mkpath(QFileInfo(ruta_).path());
    QSaveFile fichero(ruta_);
    if (!fichero.open(QIODevice::WriteOnly))
        return;
    fichero.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    fichero.write(registro);
    fichero.commit();
}

void Emparejamiento::borrarRegistro()
{
    const std::lock_guard cerrojo(mutex_);
    registro_.clear();
    QFile::remove(ruta_);
}

bool Emparejamiento::conoceA(const QString &hostId) const
{
    const std::lock_guard cerrojo(mutex_);
    return hosts_.contains(hostId);
}

QString Emparejamiento::emparejar(const QString &hostId)
{
    const std::lock_guard cerrojo(mutex_);
    if (confianza_ == Confianza::Pendiente)
        return u"PairingDialogResponsePending"_s;
    if (confianza_ == Confianza::No)
        return u"UserDeniedPairing"_s;
    hosts_.insert(hostId);
    return {};
}

void Emparejamiento::desemparejar(const QString &hostId)
{
    const std::lock_guard cerrojo(mutex_);
    hosts_.remove(hostId);
    confianza_ = Confianza::Pendiente;
}

void Emparejamiento::responder(Confianza confianza, bool conRegistro)
{
    {
        const std::lock_guard cerrojo(mutex_);
        confianza_ = confianza;
        if (confianza == Confianza::No)
            hosts_.clear();
    }
    if (confianza == Confianza::No)
        borrarRegistro();
    else if (conRegistro)
        crearRegistro();
}

void Emparejamiento::olvidar(bool conservarRegistro)
{
    {
        const std::lock_guard cerrojo(mutex_);
        hosts_.clear();
        confianza_ = Confianza::Pendiente;
    }
    if (!conservarRegistro)
        borrarRegistro();
}

} // namespace simulado
