#include "backups/CopiaDeSeguridad.h"

#include "backups/ComprobacionDeCopia.h"
#include "backups/EntornoDeHerramienta.h"
#include "backups/ExplicarFallo.h"
#include "backups/VigilanteDelTelefono.h"
#include "core/Herramientas.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "session/Detector.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// One run of the tool, from its launch to the ending of the job; deletes itself then. What arrives after the owner
/// cancelled, or after another job took the frame over, is dropped.
class Copia : public QObject
{
public:
    Copia(Tarea &laTarea, const QString &elUdid, const QString &elDestino)
        : QObject(&laTarea)
        , tarea(laTarea)
        , udid(elUdid)
        , carpeta(elDestino + u'/' + elUdid)
        , destino(elDestino)
        , numero(laTarea.trabajo())
        , vigilante(elUdid)
    {
        connect(&vigilante, &VigilanteDelTelefono::perdido, this, &Copia::telefonoPerdido);
    }

    void lanzar()
    {
        tarea.ejecutor.entornoExtra = entornoDeHerramienta();
        const QStringList orden{u"-u"_s, udid, u"backup"_s, u"--full"_s, destino};
        const QPointer yo(this);
        tarea.ejecutor.lanzar(
            *Herramientas::idevicebackup2(), orden,
            [yo](const QString &linea) {
                if (yo && yo->sigue())
                    yo->linea(linea);
            },
            [yo](int codigo) {
                if (yo)
                    yo->final(codigo);
            });
        vigilante.empezar(tarea.ejecutor.procesoHijo());
    }

private:
    bool sigue() const { return tarea.sigue(numero); }

    void linea(const QString &texto)
    {
        vigilante.haHablado();
        if (const auto porcentaje = porcentajeGlobal(texto)) {
            tarea.ponAvance(*porcentaje, 100);
            tarea.ponDetalle(u"%1% de la copia"_s.arg(*porcentaje));
            return;
        }
        if (texto.contains("Receiving files"_L1) || texto.contains("Sending"_L1))
            return;
        tarea.apunta(texto);
        if (texto.contains("Device is locked"_L1) || texto.contains("Waiting for"_L1))
            tarea.ponDetalle(u"Desbloquea el iPhone para continuar"_s);
    }

    void telefonoPerdido()
    {
        if (!sigue())
            return;
        sinTelefono = true;
        echado = true;
        tarea.apunta(u"El iPhone ya no está conectado."_s);
        tarea.ejecutor.cancelar();
    }

    void final(int codigo)
    {
        vigilante.parar();
        if (!sigue())
            return deleteLater();
        if (codigo == 0) { // well, even if the cable left with the last words
            enSegundoPlano(
                this, [carpeta = carpeta] { return comprobarCopia(carpeta); },
                [this](const ComprobacionDeCopia &comprobacion) { comprobada(comprobacion); });
            return;
        }
        // The tool says the same of a pulled cable as of many other things.
        enSegundoPlano(
            this, [udid = udid] { return Detector::conectados().contains(udid); },
            [this](bool conectado) {
                sinTelefono = sinTelefono || !conectado;
                acabarMal(motivoDelFallo());
            });
    }

    void comprobada(const ComprobacionDeCopia &comprobacion)
    {
        if (comprobacion.rota())
            apartarManifiesto(carpeta, principio);
        if (!sigue())
            return deleteLater();
        for (const auto &detalle : comprobacion.detalles)
            tarea.apunta(detalle);
        if (comprobacion.rota())
            return acabarMal(comprobacion.discoLleno ? sentenciaDeDiscoLleno() : motivoDelFallo());
        tarea.apunta(u"Copia de seguridad terminada."_s);
        acabar(true, u"Copia completa guardada"_s);
    }

    QString motivoDelFallo() const
    {
        const auto cierta = causaCierta(tarea.registro());
        if (cierta && !echado)
            return *cierta;
        if (sinTelefono)
            return sentenciaDeIPhonePerdido();
        // Every run announces whether it will be encrypted; that line is no trouble with a password.
        auto lineas = tarea.registro();
        lineas.removeIf([](const QString &una) { return una.startsWith("Backup will be "_L1); });
        return explicar(lineas);
    }

    void acabarMal(const QString &sentencia)
    {
        if (!sigue())
            return deleteLater();
        tarea.apunta(sentencia);
        acabar(false, u"No se pudo completar"_s);
    }

    void acabar(bool bien, const QString &detalle)
    {
        tarea.ponDetalle(detalle);
        tarea.cerrar(bien);
        deleteLater();
    }

    Tarea &tarea;
    QString udid;
    QString carpeta;
    QString destino;
    int numero;
    QDateTime principio = QDateTime::currentDateTime();
    bool sinTelefono = false;
    bool echado = false; ///< the tool was ended by us, because the phone had left
    VigilanteDelTelefono vigilante;
};

} // namespace

void copiaDeSeguridad(Tarea &tarea, const QString &udid, const QString &destino)
{
    if (!Herramientas::idevicebackup2())
        return;
    tarea.empezar(u"Copia de seguridad completa"_s, u"Preparando..."_s);
    tarea.muestra();
    tarea.ponInicio(QDateTime::currentDateTimeUtc());
    tarea.ponCarpetaResultado(destino);
    QDir().mkpath(destino); // when it cannot be made, the tool says so
    tarea.apunta(u"El iPhone tiene que estar desbloqueado para empezar."_s);
    tarea.apunta(u"Una vez arranca, puedes apagar la pantalla: sigue solo."_s);
    (new Copia(tarea, udid, destino))->lanzar();
}

} // namespace vellora
