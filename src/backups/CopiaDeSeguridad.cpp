#include "backups/CopiaDeSeguridad.h"

#include "backups/ComprobacionDeCopia.h"
#include "backups/CopiasAnteriores.h"
#include "backups/EntornoDeHerramienta.h"
#include "backups/ExplicarFallo.h"
#include "backups/VigilanteDelDisco.h"
#include "backups/VigilanteDelTelefono.h"
#include "core/Formato.h"
#include "core/Herramientas.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "session/Detector.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPointer>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// One run of the tool, from the making of its folder to the ending of the job; deletes itself then. What arrives after
/// the owner cancelled, or after another job took the frame over, is dropped.
class Copia : public QObject
{
public:
    Copia(Tarea &laTarea, const QString &elUdid, const QString &elDestino, const OpcionesDeCopia &lasOpciones)
        : QObject(&laTarea)
        , tarea(laTarea)
        , udid(elUdid)
        , destino(elDestino)
        , opciones(lasOpciones)
        , numero(laTarea.trabajo())
        , vigilante(elUdid)
        , disco(elDestino)
    {
        connect(&vigilante, &VigilanteDelTelefono::perdido, this, &Copia::telefonoPerdido);
        connect(&disco, &VigilanteDelDisco::lleno, this, &Copia::discoLleno);
    }

    void preparar()
    {
        const auto abrir = [udid = udid, destino = destino, modo = opciones.modo,
                            guardadas = CopiasAnteriores::cuantas(), aunqueFalte = opciones.aunqueFalteSitio] {
            Preparada lista;
            auto abierta = CopiaEnCurso::abrir(destino, udid, modo, guardadas);
            if (!abierta) {
                lista.motivo = abierta.motivo();
                return lista;
            }
            lista.obra = std::make_shared<CopiaEnCurso>(*std::move(abierta));
            lista.hayAnterior = QFileInfo::exists(destino + u'/' + udid);
            if (!aunqueFalte && lista.obra->modo() == CopiaEnCurso::Modo::Completa)
                lista.preguntaDeSitio = preguntaDeSitio(*lista.obra);
            return lista;
        };
        enSegundoPlano(this, abrir, [this](Preparada lista) { preparada(std::move(lista)); });
    }

private:
    struct Preparada {
        std::shared_ptr<CopiaEnCurso> obra;
        QString motivo; ///< why there is none
        bool hayAnterior = false;
        QString preguntaDeSitio; ///< empty when there seems to be room
    };

    /// A backup is about as large as the one before it.
    static QString preguntaDeSitio(const CopiaEnCurso &obra)
    {
        const auto bytes = obra.bytesDeLaAnterior();
        const auto libres = obra.libres();
        if (!bytes || !libres || *bytes <= *libres)
            return {};
        return u"La copia que tienes ocupa %1 y se guarda hasta que la nueva esté comprobada, pero en el disco quedan "
               "%2. Puede que no quepa. La copia que tienes no se toca en ningún caso."_s.arg(Formato::tamano(*bytes),
                                                                                              Formato::tamano(*libres));
    }

    void preparada(Preparada lista)
    {
        obra = std::move(lista.obra);
        hayAnterior = lista.hayAnterior;
        if (!sigue())
            return soltar([this] { deleteLater(); });
        if (!obra)
            return acabarMal(lista.motivo);
        if (lista.preguntaDeSitio.isEmpty())
            return lanzar();
        soltar([this, pregunta = lista.preguntaDeSitio] {
            if (!sigue())
                return deleteLater();
            tarea.apunta(pregunta);
            acabar(false, u"Puede que no quepa en el disco"_s);
            if (opciones.alFaltarSitio)
                opciones.alFaltarSitio(pregunta);
        });
    }

    void lanzar()
    {
        tarea.ejecutor.entornoExtra = entornoDeHerramienta();
        QStringList orden{u"-u"_s, udid, u"backup"_s, obra->destino()};
        if (obra->modo() == CopiaEnCurso::Modo::Completa)
            orden.insert(3, u"--full"_s);
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
        disco.empezar();
    }

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
        // Said before the first file is sent. What the phone does is decided there, whatever this computer keeps.
        if (texto == "Backup will be unencrypted."_L1 && !opciones.sinCifrar) {
            enClaro = true;
            return tarea.ejecutor.cancelar();
        }
        if (texto.contains("Received an error message from device"_L1))
            ++rehusados; // one for each file that the phone would not send
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

    /// What the tool could not write it leaves out without a word, so nothing that follows would be worth its time.
    void discoLleno()
    {
        if (!sigue())
            return;
        sinSitio = true;
        tarea.ejecutor.cancelar();
    }

    void final(int codigo)
    {
        vigilante.parar();
        disco.parar();
        if (!sigue())
            return soltar([this] { deleteLater(); });
        if (sinSitio)
            return acabarMal(sentenciaDeDiscoLleno());
        if (enClaro)
            return noIbaCifrada();
        if (codigo == 0) // well, even if the cable left with the last words
            return comprobar();
        // The tool says the same of a pulled cable as of many other things.
        enSegundoPlano(
            this, [udid = udid] { return Detector::conectados().contains(udid); },
            [this](bool conectado) {
                sinTelefono = sinTelefono || !conectado;
                acabarMal(motivoDelFallo());
            });
    }

    void noIbaCifrada()
    {
        acabarMal(u"El iPhone iba a hacer la copia sin cifrar y no me lo has pedido, así que no la he hecho."_s);
        if (opciones.alNoIrCifrada)
            opciones.alNoIrCifrada();
    }

    void comprobar()
    {
        tarea.ponDetalle(u"Comprobando la copia…"_s);
        tarea.ponAvance(0, 0);
        const QPointer yo(this);
        comprobarCopia(
            tarea.ejecutorMotor, udid, obra->carpeta(), rehusados,
            [yo](qint64 hechos, qint64 deTotal) {
                if (yo && yo->sigue())
                    yo->tarea.ponAvance(hechos, deTotal);
            },
            [yo](const ComprobacionDeCopia &comprobacion) {
                if (yo)
                    yo->comprobada(comprobacion);
            });
    }

    void comprobada(const ComprobacionDeCopia &comprobacion)
    {
        if (!sigue()) // cancelled in the midst of the check: nothing was found out
            return soltar([this] { deleteLater(); });
        for (const auto &detalle : comprobacion.detalles)
            tarea.apunta(detalle);
        if (comprobacion.rota())
            return acabarMal(comprobacion.discoLleno ? sentenciaDeDiscoLleno() : motivoDelFallo());
        const auto colocar = [obra = obra, veredicto = comprobacion.veredicto] {
            return obra->colocar(veredicto);
        };
        enSegundoPlano(this, colocar,
                       [this, entera = comprobacion.entera()](bool puesta) { colocada(puesta, entera); });
    }

    void colocada(bool puesta, bool entera)
    {
        if (!sigue()) // cancelled in the last moment; a backup is in its place all the same
            return soltar([this] { deleteLater(); });
        if (!puesta)
            return acabarMal(u"No he podido poner la copia nueva en su sitio."_s);
        tarea.ponAvance(100, 100);
        tarea.apunta(u"Copia de seguridad terminada."_s);
        soltar([this, entera] {
            acabar(true, entera ? u"Copia completa guardada"_s : u"Copia guardada, no comprobada"_s);
        });
    }

    /// Lets go of the folder of the run, with what it holds of a backup that came to nothing, and then goes on.
    void soltar(const std::function<void()> &despues)
    {
        auto quitar = [obra = std::exchange(obra, {})]() mutable {
            obra.reset(); // the last one, so that what it removes is not removed on the main thread
            return true;
        };
        enSegundoPlano(this, std::move(quitar), [despues](bool) { despues(); });
    }

    QString motivoDelFallo() const
    {
        const auto cierta = causaCierta(tarea.registro());
        if (cierta && !echado)
            return *cierta;
        return sinTelefono ? sentenciaDeIPhonePerdido() : explicar(sinElAnuncio(tarea.registro()));
    }

    void acabarMal(const QString &sentencia)
    {
        soltar([this, sentencia] {
            if (!sigue())
                return deleteLater();
            if (hayAnterior)
                tarea.apunta(u"La copia que ya tenías no se ha tocado."_s);
            tarea.apunta(sentencia);
            acabar(false, u"No se pudo completar"_s);
        });
    }

    void acabar(bool bien, const QString &detalle)
    {
        tarea.ponDetalle(detalle);
        tarea.cerrar(bien);
        deleteLater();
    }

    Tarea &tarea;
    QString udid;
    QString destino;
    OpcionesDeCopia opciones;
    int numero;
    std::shared_ptr<CopiaEnCurso> obra;
    bool hayAnterior = false;
    qsizetype rehusados = 0;
    bool sinTelefono = false;
    bool enClaro = false;  ///< ended by us, because it would not have been encrypted
    bool sinSitio = false; ///< the disk was full, if only for a moment
    bool echado = false;   ///< the tool was ended by us, because the phone had left
    VigilanteDelTelefono vigilante;
    VigilanteDelDisco disco;
};

} // namespace

void copiaDeSeguridad(Tarea &tarea, const QString &udid, const QString &destino, const OpcionesDeCopia &opciones)
{
    if (!Herramientas::idevicebackup2())
        return;
    tarea.empezar(u"Copia de seguridad completa"_s, u"Preparando..."_s);
    tarea.muestra();
    tarea.ponInicio(QDateTime::currentDateTimeUtc());
    tarea.ponCarpetaResultado(destino);
    tarea.apunta(u"El iPhone tiene que estar desbloqueado para empezar."_s);
    tarea.apunta(u"Una vez arranca, puedes apagar la pantalla: sigue solo."_s);
    (new Copia(tarea, udid, destino, opciones))->preparar();
}

} // namespace vellora
