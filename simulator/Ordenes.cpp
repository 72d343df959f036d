#include "Ordenes.h"

#include "Ajustes.h"
#include "Mux.h"
#include "Plist.h"
#include "Telefono.h"

#include <QHash>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

QJsonObject bien()
{
    return {{u"bien"_s, true}};
}

QJsonObject mal(const QString &motivo)
{
    return {{u"bien"_s, false}, {u"motivo"_s, motivo}};
}

QJsonObject cortar(Telefono &telefono, const QJsonObject &orden)
{
    const QString servicio = orden["servicio"_L1].toString();
    if (servicio.isEmpty())
        return mal(u"Falta el servicio"_s);
    if (orden.contains("entre_ficheros"_L1)) {
        if (servicio != "com.apple.mobilebackup2"_L1)
            return mal(u"entre_ficheros solo vale para com.apple.mobilebackup2"_s);
        telefono.averias().cortarEntreFicheros(servicio, orden["entre_ficheros"_L1].toInt());
        return bien();
    }
    const bool recibido = orden["sentido"_L1].toString() == "recibido"_L1;
    telefono.averias().cortar(servicio, orden["bytes"_L1].toInteger(),
                              recibido ? Averias::Sentido::Recibido : Averias::Sentido::Enviado);
    return bien();
}

QJsonObject fallar(Telefono &telefono, const QJsonObject &orden)
{
    QString peticion = orden["peticion"_L1].toString();
    Fallo fallo{desdeJson(orden["error"_L1]), orden["texto"_L1].toString(), orden["veces"_L1].toInt(),
                orden["tras_ficheros"_L1].toInt()};
    if (fallo.trasFicheros > 0)
        peticion += ":tras_ficheros"_L1;
    if (!fallo.error.isValid() || fallo.error.isNull()) {
        telefono.averias().dejarDeFallar(peticion);
        telefono.averias().dejarDeFallar(peticion + ":tras_ficheros"_L1);
    } else if (peticion.isEmpty()) {
        return mal(u"Falta la peticion"_s);
    } else {
        telefono.averias().fallar(peticion, fallo);
    }
    return bien();
}

QJsonObject ponerBateria(Telefono &telefono, const QJsonObject &orden)
{
    const QString dominio = u"com.apple.mobile.battery"_s;
    const int nivel = orden["nivel"_L1].toInt(-1);
    if (nivel < 0 || nivel > 100)
        return mal(u"El nivel va de 0 a 100"_s);
    const bool cargando = orden["cargando"_L1].toBool();
    telefono.ponerValor(dominio, u"BatteryCurrentCapacity"_s, qint64(nivel));
    telefono.ponerValor(dominio, u"BatteryIsCharging"_s, cargando);
    telefono.ponerValor(dominio, u"FullyCharged"_s, nivel == 100);
    return bien();
}

QJsonObject contar(Telefono &telefono)
{
    QJsonObject respuesta = bien();
    QVariantMap cuentas = telefono.averias().cuentas();
    cuentas.insert(u"ultimaPeticion"_s, telefono.ultimaPeticion());
    cuentas.insert(u"conectado"_s, telefono.conectado());
    cuentas.insert(u"bloqueado"_s, telefono.bloqueado());
    cuentas.insert(u"udid"_s, telefono.udid());
    respuesta.insert(u"cuentas"_s, aJson(cuentas));
    return respuesta;
}

using Accion = std::function<QJsonObject(Telefono &telefono, const QJsonObject &orden)>;

/// An action that cannot go wrong.
template <typename F> Accion simple(F accion)
{
    return [accion](Telefono &telefono, const QJsonObject &orden) {
        accion(telefono, orden);
        return bien();
    };
}

QHash<QString, Accion> accionesDeEstado()
{
    return {
        {u"conectar"_s, simple([](Telefono &t, const QJsonObject &) { t.conectar(); })},
        {u"desconectar"_s, simple([](Telefono &t, const QJsonObject &) { t.desconectar(); })},
        {u"bloquear"_s, simple([](Telefono &t, const QJsonObject &) { t.bloquear(true); })},
        {u"desbloquear"_s, simple([](Telefono &t, const QJsonObject &) { t.bloquear(false); })},
        {u"confiar"_s, simple([](Telefono &t, const QJsonObject &o) {
             t.emparejamiento().responder(Confianza::Si, o["con_registro"_L1].toBool());
         })},
        {u"denegar"_s,
         simple([](Telefono &t, const QJsonObject &) { t.emparejamiento().responder(Confianza::No, false); })},
        {u"olvidar"_s, simple([](Telefono &t, const QJsonObject &o) {
             t.emparejamiento().olvidar(o["conservar_registro"_L1].toBool());
         })},
        {u"llenar_disco"_s,
         simple([](Telefono &t, const QJsonObject &o) { t.llenarDisco(o["lleno"_L1].toBool(true)); })},
        {u"ignorar_espacio_del_ordenador"_s,
         simple([](Telefono &t, const QJsonObject &o) { t.ignoraEspacioDelOrdenador = o["valor"_L1].toBool(true); })},
        {u"pedir_codigo"_s, simple([](Telefono &t, const QJsonObject &o) {
             t.exigirCodigo(o["valor"_L1].toBool(true), o["plazo_ms"_L1].toInt(180'000));
         })},
        {u"introducir_codigo"_s, simple([](Telefono &t, const QJsonObject &) { t.introducirCodigo(); })},
        {u"aviso"_s, simple([](Telefono &t, const QJsonObject &o) { t.avisar(o["nombre"_L1].toString()); })},
        {u"clave_de_copia"_s, simple([](Telefono &t, const QJsonObject &o) {
             t.rondasDeCopia = o["rondas"_L1].toInt(t.rondasDeCopia);
             t.ponerClaveDeCopia(o["clave"_L1].toString());
         })},
    };
}

QHash<QString, Accion> accionesDeAverias()
{
    return {
        {u"cortar"_s, cortar},
        {u"fallar"_s, fallar},
        {u"bateria"_s, ponerBateria},
        {u"frenar"_s, simple([](Telefono &t, const QJsonObject &o) {
             t.averias().frenar(o["servicio"_L1].toString(), o["bytes_por_segundo"_L1].toInteger());
         })},
        {u"pausa"_s, simple([](Telefono &t, const QJsonObject &o) {
             t.averias().pausar(o["servicio"_L1].toString(), o["ms"_L1].toInt(), o["veces"_L1].toInt(1));
         })},
        {u"valor"_s, simple([](Telefono &t, const QJsonObject &o) {
             t.ponerValor(o["dominio"_L1].toString(), o["clave"_L1].toString(), desdeJson(o["valor"_L1]));
         })},
        {u"contar"_s,
         [](Telefono &t, const QJsonObject &) {
             return contar(t);
         }},
    };
}

} // namespace

Ordenes::Ordenes(Mux &mux, Alta alta) : mux_(mux), alta_(std::move(alta)) {}

QByteArray Ordenes::obedecer(const QByteArray &linea)
{
    const QJsonDocument documento = QJsonDocument::fromJson(linea);
    const QJsonObject respuesta = documento.isObject() ? obedecer(documento.object()) : mal(u"No es un objeto JSON"_s);
    return QJsonDocument(respuesta).toJson(QJsonDocument::Compact);
}

QJsonObject Ordenes::obedecer(const QJsonObject &orden)
{
    static const auto acciones = [] {
        auto todas = accionesDeEstado();
        todas.insert(accionesDeAverias());
        return todas;
    }();
    const QString nombre = orden["orden"_L1].toString();
    if (nombre == "salir"_L1) {
        salir_ = true;
        return bien();
    }
    if (nombre == "anadir"_L1)
        return anadir(orden["telefono"_L1].toObject());
    const auto accion = acciones.constFind(nombre);
    if (accion == acciones.cend())
        return mal(u"Orden desconocida: "_s + nombre);
    const auto telefono = mux_.buscar(orden["telefono"_L1].toString());
    if (!telefono)
        return mal(u"No hay tal teléfono, o hay varios y no se dice cuál"_s);
    return (*accion)(*telefono, orden);
}

QJsonObject Ordenes::anadir(const QJsonObject &entrada)
{
    QString motivo;
    const auto ajustes = leerTelefono(entrada, motivo);
    if (ajustes)
        motivo = alta_(*ajustes);
    return motivo.isEmpty() ? bien() : mal(motivo);
}

} // namespace simulado
