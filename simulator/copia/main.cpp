#include "Cifra.h"
#include "ContenidoDeCopia.h"
#include "Manifiesto.h"
#include "Plist.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTextStream>
#include <QUuid>

using namespace Qt::StringLiterals;
using namespace simulado;

namespace
{

/// Writes the backup of a phone straight into a folder, as it would stand there after a backup by cable.
class Copia
{
public:
    Copia(const QString &telefono, const QString &carpeta, std::optional<LlavesDeCopia> llaves)
        : telefono_(telefono), carpeta_(carpeta), llaves_(std::move(llaves))
    {
    }

    bool escribir()
    {
        QDir().mkpath(carpeta_);
        auto entradas = entradasDeCopia(telefono_, llaves_, temporal_.path());
        EscritorDeManifiesto manifiesto(temporal_.filePath(u"Manifest.db"_s));
        for (auto &entrada : entradas) {
            ponClave(entrada, llaves_);
            if (entrada.tipo == EntradaDeCopia::Fichero && !copiar(entrada))
                return false;
            if (!manifiesto.anadir(entrada))
                return false;
        }
        return !entradas.isEmpty() && manifiesto.cerrar() && escribirManifiestos();
    }

private:
    bool copiar(EntradaDeCopia &entrada)
    {
        QFile origen(QFile::decodeName(entrada.origen));
        QDir(carpeta_).mkdir(QString::fromLatin1(entrada.id.left(2)));
        return origen.open(QIODevice::ReadOnly | QIODevice::Unbuffered) &&
               pasar(origen, entrada.nombreEnCopia(),
                     llaves_ ? llaves_->desenvolver(entrada.clave).value_or(QByteArray()) : QByteArray());
    }

    bool pasar(QIODevice &origen, const QString &nombre, const QByteArray &clave)
    {
        QFile destino(carpeta_ + u'/' + nombre);
        if (!destino.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return false;
        std::optional<LectorCifrado> cifrado;
        if (!clave.isEmpty())
            cifrado.emplace(origen, clave);
        QIODevice &lector = cifrado ? static_cast<QIODevice &>(*cifrado) : origen;
        for (;;) {
            const qint64 n = lector.read(bloque_.data(), bloque_.size());
            if (n <= 0)
                return n == 0;
            if (destino.write(bloque_.constData(), n) != n)
                return false;
        }
    }

    bool escribirManifiestos()
    {
        QFile fichero(telefono_ + "/telefono.json"_L1);
        if (!fichero.open(QIODevice::ReadOnly))
            return false;
        const auto valores = desdeJson(QJsonDocument::fromJson(fichero.readAll())["dominios"_L1]).toMap();
        const QVariantMap general = valores[QString()].toMap();
        const QByteArray clave = alAzar(32);
        QFile base(temporal_.filePath(u"Manifest.db"_s));
        const QVariantMap informacion{{u"Device Name"_s, general[u"DeviceName"_s]},
                                      {u"Unique Identifier"_s, general[u"UniqueDeviceID"_s]},
                                      {u"Product Version"_s, general[u"ProductVersion"_s]}};
        return base.open(QIODevice::ReadOnly) && pasar(base, u"Manifest.db"_s, llaves_ ? clave : QByteArray()) &&
               poner(u"Manifest.plist"_s,
                     manifiestoPlist(general, valores[u"com.apple.mobile.data_sync"_s].toMap(), llaves_, clave)) &&
               poner(u"Info.plist"_s, plistXml(informacion)) &&
               poner(u"Status.plist"_s,
                     estadoPlist(QUuid::createUuid().toString(QUuid::WithoutBraces), true, u"finished"_s));
    }

    bool poner(const QString &nombre, const QByteArray &bytes)
    {
        QFile fichero(carpeta_ + u'/' + nombre);
        return fichero.open(QIODevice::WriteOnly) && fichero.write(bytes) == bytes.size();
    }

    const QString telefono_;
    const QString carpeta_;
    const std::optional<LlavesDeCopia> llaves_;
    QTemporaryDir temporal_;
    QByteArray bloque_ = QByteArray(1 << 20, Qt::Uninitialized);
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser lector;
    lector.setApplicationDescription(u"Writes the backup of a simulated phone straight into a folder."_s);
    lector.addHelpOption();
    lector.addOptions({{u"telefono"_s, u"Folder with the phone's contents."_s, u"DIR"_s},
                       {u"copia"_s, u"Folder of the backup."_s, u"DIR"_s},
                       {u"clave"_s, u"Password; without it the backup is not encrypted."_s, u"CLAVE"_s},
                       {u"rondas"_s, u"Rounds of the password's derivation."_s, u"N"_s,
                        QString::number(LlavesDeCopia::rondasDeVerdad)}});
    lector.process(app);
    QTextStream errores(stderr);
    const int rondas = lector.value(u"rondas"_s).toInt();
    if (!lector.isSet(u"telefono"_s) || !lector.isSet(u"copia"_s) || rondas < 1) {
        errores << lector.helpText();
        return 2;
    }
    std::optional<LlavesDeCopia> llaves;
    if (lector.isSet(u"clave"_s))
        llaves = LlavesDeCopia::nuevas(lector.value(u"clave"_s), rondas);
    if (Copia(lector.value(u"telefono"_s), lector.value(u"copia"_s), llaves).escribir())
        return 0;
    errores << u"No se pudo escribir la copia\n"_s;
    return 1;
}
