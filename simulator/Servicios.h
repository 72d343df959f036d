#pragma once

#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

namespace simulado
{

class Flujo;
class Telefono;

/// What runs a service on its connection until either side ends it. The stream is already in TLS when it has to be.
using Servicio = void (*)(Telefono &telefono, Flujo &flujo);

/// Null when the phone has no such service.
Servicio buscarServicio(const QString &nombre);
constexpr quint16 puertoLockdown = 62078;

/// Serves one connection to a port of the phone. False when nothing listens there; then nothing was read or written.
bool atender(const std::shared_ptr<Telefono> &telefono, quint16 puerto, Flujo &flujo, const QByteArray &saludo);

/// A message of most services: u32 big-endian length and a property list.
enum class Formato { Xml, Binario };
bool enviarPlist(Flujo &flujo, const QVariant &mensaje, Formato formato = Formato::Xml);
/// Absent at the end of the stream or when what came is no property list.
std::optional<QVariant> recibirPlist(Flujo &flujo);

// The services, each in the file of its name (the small ones share ServiciosMenores.cpp).
void servirLockdown(Telefono &telefono, Flujo &flujo);
void servirAfc(Telefono &telefono, Flujo &flujo);
void servirAfcEn(Telefono &telefono, Flujo &flujo, const QString &raiz);
void servirAvisos(Telefono &telefono, Flujo &flujo);
void servirCopia(Telefono &telefono, Flujo &flujo);
void servirApps(Telefono &telefono, Flujo &flujo);
void servirPantallaInicio(Telefono &telefono, Flujo &flujo);
void servirDiagnostico(Telefono &telefono, Flujo &flujo);
void servirMudanzaDeFallos(Telefono &telefono, Flujo &flujo);
void servirInformesDeFallos(Telefono &telefono, Flujo &flujo);
void servirCasaDeApps(Telefono &telefono, Flujo &flujo);
void servirPerfiles(Telefono &telefono, Flujo &flujo);
void servirProvisiones(Telefono &telefono, Flujo &flujo);
void servirLatido(Telefono &telefono, Flujo &flujo);

} // namespace simulado
