#pragma once

#include "EnlaceDispositivo.h"
#include "InventarioDeCopia.h"
#include "LlavesDeCopia.h"

#include <QHash>
#include <QSet>
#include <QTemporaryDir>

#include <optional>

namespace simulado
{

class Telefono;

/// How an operation of the backup service ends: 0, or a device error with its words.
struct Desenlace {
    int codigo = 0;
    QString texto;
};
/// The device error's usual words, e.g. "Device locked (MBErrorDomain/208)".
Desenlace errorDeCopia(int codigo, const QString &texto = {});

/// One backup, from the phone's side. The new files go into "Snapshot" and take their place at the end, so that a
/// backup that breaks off leaves the one before it whole.
class EscritorDeCopia
{
public:
    /// `destino` is the folder's name on the computer. `completa`: send everything even if the computer has it.
    /// With keys the backup is encrypted.
    EscritorDeCopia(Telefono &telefono, EnlaceDispositivo &enlace, const QString &destino, bool completa,
                    std::optional<LlavesDeCopia> llaves);

    /// Absent when the stream broke.
    std::optional<Desenlace> escribir();

private:
    struct Anterior {
        qint64 tamano = 0;
        qint64 fecha = 0;
        QByteArray clave;
    };
    bool leerAnterior();
    bool valeLoAnterior();
    bool cabe();
    bool prepararDestino();
    bool crearCarpetas();
    std::optional<Desenlace> subirCambios();
    std::optional<Desenlace> subirFichero(EntradaDeCopia &entrada);
    bool subirManifiestos();
    bool colocar();
    bool limpiar();
    bool subirEstado(const QString &momento, double progreso);
    bool subirBytes(const QString &nombre, const QByteArray &bytes, double progreso);
    QString ruta(const QString &resto) const { return destino_ + u'/' + resto; }
    double progreso() const;

    Telefono &telefono_;
    EnlaceDispositivo &enlace_;
    const QString destino_;
    bool completa_;
    const std::optional<LlavesDeCopia> llaves_;
    QTemporaryDir temporal_;
    QList<EntradaDeCopia> entradas_;
    QList<qsizetype> cambios_; ///< positions in entradas_ of the files to send
    QSet<QString> prefijosListos_;
    QHash<QByteArray, Anterior> anterior_;
    quint64 bytesTotales_ = 0;
    quint64 bytesEnviados_ = 0;
    int ficherosEnviados_ = 0;
    const QString uuid_;
};

} // namespace simulado
