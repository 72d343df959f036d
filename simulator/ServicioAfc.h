#pragma once

#include "RaizAfc.h"

#include <QHash>
#include <QString>

namespace simulado
{

class Flujo;
class Telefono;

/// One client of the file service. Packets: "CFA6LPAA", then four little-endian u64 (whole length, length with header
/// data, packet number, operation), the header data and the payload.
class SesionAfc
{
public:
    SesionAfc(Telefono &telefono, Flujo &flujo, const QByteArray &raiz);
    ~SesionAfc();
    SesionAfc(const SesionAfc &) = delete;
    SesionAfc &operator=(const SesionAfc &) = delete;
    void servir();

private:
    struct Paquete {
        quint64 numero = 0;
        quint64 operacion = 0;
        QByteArray datos;
        qint64 carga = 0; ///< payload bytes still unread on the stream
    };
    bool recibir(Paquete &paquete);
    bool descartar(qint64 bytes);
    bool atender(Paquete &paquete);
    bool atenderRuta(const Paquete &paquete);
    bool atenderManejador(Paquete &paquete);

    bool responder(const Paquete &paquete, quint64 tipo, const QByteArray &cabeza, const QByteArray &carga = {});
    bool estado(const Paquete &paquete, quint64 codigo);
    bool hecho(const Paquete &paquete, bool bien); ///< status 0, or that of errno

    bool fichaDe(const Paquete &paquete, const QByteArray &ruta);
    bool delAparato(const Paquete &paquete);
    bool abrir(const Paquete &paquete);
    bool leer(const Paquete &paquete, int descriptor);
    bool escribir(Paquete &paquete, int descriptor);
    bool cambiarTamano(const Paquete &paquete, int descriptor, qint64 tamano);
    bool cerrojo(const Paquete &paquete, int descriptor);
    bool truncar(const Paquete &paquete, const QByteArray &ruta);
    bool borrar(const Paquete &paquete, const QByteArray &ruta);

    Telefono &telefono_;
    Flujo &flujo_;
    RaizAfc raiz_;
    QHash<quint64, int> abiertos_;
    quint64 ultimoManejador_ = 0;
};

} // namespace simulado
