#pragma once

#include <QByteArray>
#include <QtEndian>

// The wire of the file service: "CFA6LPAA", then four little-endian u64 (whole length, length with header data, packet
// number, operation), the header data and the payload.
namespace simulado::afc
{

constexpr qsizetype largoCabecera = 40;
constexpr char marca[] = "CFA6LPAA";

enum Operacion : quint64 {
    Estado = 0x01,
    Datos = 0x02,
    LeerCarpeta = 0x03,
    Truncar = 0x07,
    Borrar = 0x08,
    CrearCarpeta = 0x09,
    Ficha = 0x0A,
    DelAparato = 0x0B,
    Abrir = 0x0D,
    Abierto = 0x0E,
    Leer = 0x0F,
    Escribir = 0x10,
    Situar = 0x11,
    Situacion = 0x12,
    Situado = 0x13,
    Cerrar = 0x14,
    CambiarTamano = 0x15,
    Renombrar = 0x18,
    Cerrojo = 0x1B,
    Enlazar = 0x1C,
    PonerFecha = 0x1E,
    BorrarArbol = 0x22,
};

/// The number at that byte of a packet's data; 0 when the packet is too short.
inline quint64 numeroEn(const QByteArray &datos, qsizetype posicion)
{
    return datos.size() >= posicion + 8 ? qFromLittleEndian<quint64>(datos.constData() + posicion) : 0;
}

} // namespace simulado::afc
