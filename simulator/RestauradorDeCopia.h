#pragma once

#include "EnlaceDispositivo.h"
#include "EscritorDeCopia.h"
#include "LlavesDeCopia.h"
#include "Manifiesto.h"

#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace simulado
{

/// One restore, from the phone's side: takes every file of the computer's backup into
/// TELEFONO/restaurado/<Domain>/<path> and gives it its date back. The folder appears whole at the end, in place of an
/// earlier restore's.
class RestauradorDeCopia
{
public:
    RestauradorDeCopia(Telefono &telefono, EnlaceDispositivo &enlace, const QString &origen, const QString &clave);
    /// Absent when the stream broke.
    std::optional<Desenlace> restaurar();

private:
    struct Pedido {
        QString destino;
        qint64 tamano = 0;
        qint64 fecha = 0;
        QByteArray clave; ///< of the file, unwrapped; empty when it is not encrypted
    };
    std::optional<Desenlace> leerCopia();
    std::optional<Desenlace> abrirLlaves();
    bool apuntar(const FilaDeManifiesto &fila);
    std::optional<Desenlace> traer(const QStringList &rutas, double progreso);
    QIODevice *abrirDestino(const QString &ruta);
    bool cerrarDestino();

    Telefono &telefono_;
    EnlaceDispositivo &enlace_;
    const QString origen_;
    const QString clave_;
    std::optional<LlavesDeCopia> llaves_;
    const QString nueva_; ///< the folder while it is being filled
    QTemporaryDir temporal_;
    QHash<QString, Pedido> pedidos_;
    QStringList orden_;
    std::unique_ptr<QFile> abierto_;
    Pedido enCurso_;
    int recibidos_ = 0;
    bool disparatado_ = false; ///< the manifest had a path that leads outside
};

} // namespace simulado
