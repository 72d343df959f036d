#include "ContenidoDeCopia.h"

#include "Cifra.h"
#include "LlaveroDelTelefono.h"
#include "Plist.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

bool soloCifrado(const EntradaDeCopia &entrada)
{
    if (entrada.dominio == "HealthDomain"_L1 || entrada.ruta.startsWith("Library/CallHistoryDB"_L1))
        return true;
    return entrada.ruta.startsWith("Library/Safari/History.db"_L1);
}

} // namespace

QList<EntradaDeCopia> entradasDeCopia(const QString &carpetaDelTelefono, const std::optional<LlavesDeCopia> &llaves,
                                      const QString &temporal)
{
    auto entradas = inventariar(carpetaDelTelefono);
    if (!llaves)
        entradas.removeIf(soloCifrado);
    QFile fichero(temporal + "/keychain-backup.plist"_L1);
    const QByteArray llavero = llaveroParaCopia(carpetaDelTelefono, llaves ? *llaves : LlavesDeCopia::delTelefono());
    if (llavero.isEmpty() || !fichero.open(QIODevice::WriteOnly))
        return entradas;
    fichero.write(llavero);
    EntradaDeCopia entrada;
    entrada.dominio = u"KeychainDomain"_s;
    entrada.ruta = u"keychain-backup.plist"_s;
    entrada.origen = QFile::encodeName(fichero.fileName());
    entrada.id = QCryptographicHash::hash("KeychainDomain-keychain-backup.plist", QCryptographicHash::Sha1).toHex();
    entrada.tamano = llavero.size();
    entrada.fecha = QDateTime::currentSecsSinceEpoch();
    entrada.modo = 0100600;
    entrada.clase = 4;
    entradas.append(entrada);
    return entradas;
}

void ponClave(EntradaDeCopia &entrada, const std::optional<LlavesDeCopia> &llaves)
{
    if (llaves && entrada.tipo == EntradaDeCopia::Fichero && entrada.clave.isEmpty())
        entrada.clave = llaves->envolver(entrada.clase, alAzar(32));
}

QByteArray manifiestoPlist(const QVariantMap &general, const QVariantMap &sincronizacion,
                           const std::optional<LlavesDeCopia> &llaves, const QByteArray &claveDelManifiesto)
{
    QVariantMap lockdown;
    for (const QString &clave : {u"BuildVersion"_s, u"DeviceName"_s, u"ProductType"_s, u"ProductVersion"_s,
                                 u"SerialNumber"_s, u"UniqueDeviceID"_s})
        lockdown.insert(clave, general.value(clave, QString()));
    lockdown.insert(u"com.apple.Accessibility"_s, QVariantMap());
    lockdown.insert(u"com.apple.MobileDeviceCrashCopy"_s, QVariantMap());
    lockdown.insert(u"com.apple.mobile.data_sync"_s, sincronizacion);
    QVariantMap manifiesto{{u"IsEncrypted"_s, llaves.has_value()},
                           {u"Version"_s, u"10.0"_s},
                           {u"SystemDomainsVersion"_s, u"24.0"_s},
                           {u"Date"_s, QDateTime::currentDateTimeUtc()},
                           {u"WasPasscodeSet"_s, true},
                           {u"Lockdown"_s, lockdown},
                           {u"Applications"_s, QVariantMap()}};
    if (llaves) {
        manifiesto.insert(u"BackupKeyBag"_s, llaves->bolsa());
        manifiesto.insert(u"ManifestKey"_s, llaves->envolver(claseDelManifiesto, claveDelManifiesto));
    }
    return plistBinario(manifiesto);
}

QByteArray estadoPlist(const QString &uuid, bool completa, const QString &momento)
{
    return plistBinario(QVariantMap{{u"UUID"_s, uuid},
                                    {u"IsFullBackup"_s, completa},
                                    {u"Version"_s, u"3.3"_s},
                                    {u"BackupState"_s, u"new"_s},
                                    {u"Date"_s, QDateTime::currentDateTimeUtc()},
                                    {u"SnapshotState"_s, momento}});
}

} // namespace simulado
