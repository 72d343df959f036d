#pragma once

#include "core/Diario.h"
#include "core/Tarea.h"
#include "session/Dispositivo.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QVariant>

#include <memory>
#include <optional>

namespace vellora
{

class Vigia;

/// The session: connected phones, the selected one, the one job, the journal, and the folders of each phone.
/// Made once; its creation moves old folders, starts a first refresh and the clock. Main thread only.
class Modelo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariantList dispositivos READ dispositivosVariante NOTIFY cambioDeSesion)
    Q_PROPERTY(bool hayIPhone READ hayIPhone NOTIFY cambioDeSesion)
    Q_PROPERTY(vellora::Dispositivo seleccionado READ seleccionadoOVacio NOTIFY cambioDeSesion)
    Q_PROPERTY(bool buscando READ buscando NOTIFY cambioDeSesion)
    Q_PROPERTY(QString avisoAcceso READ avisoAccesoTexto NOTIFY cambioDeSesion)
    Q_PROPERTY(QString avisoCallados READ avisoCallados NOTIFY cambioDeSesion)
    Q_PROPERTY(bool hayIPhoneNuevo READ hayIPhoneNuevo NOTIFY cambioDeSesion)
    Q_PROPERTY(vellora::Dispositivo iPhoneNuevo READ iPhoneNuevoOVacio NOTIFY cambioDeSesion)
    Q_PROPERTY(QString carpetaBaseEnVista READ carpetaBase NOTIFY cambioDeSesion)
    Q_PROPERTY(QString datosDe READ datosDe NOTIFY cambioDeSesion)
    Q_PROPERTY(QStringList carpetasConDatos READ carpetasConDatos NOTIFY cambioDeSesion)
    Q_PROPERTY(vellora::Tarea *tarea READ tareaPuntero CONSTANT)
    Q_PROPERTY(vellora::Diario *diario READ diarioPuntero CONSTANT)

public:
    explicit Modelo(QObject *padre = nullptr);
    ~Modelo() override;

    const QList<Dispositivo> &dispositivos() const { return dispositivos_; }
    const std::optional<Dispositivo> &seleccionado() const { return seleccionado_; }
    bool buscando() const { return buscando_; }
    /// The sentence to show when the selected phone does not let us in, or absent.
    const std::optional<QString> &avisoAcceso() const { return avisoAcceso_; }
    /// Which phones are on the cable and do not answer, a line each; empty when all do.
    const QString &avisoCallados() const { return avisoCallados_; }
    const std::optional<Dispositivo> &iPhoneNuevo() const { return iPhoneNuevo_; }
    Tarea &tarea() { return *tarea_; }
    Diario &diario() { return *diario_; }

    /// Starts a refresh and returns at once; without `silencioso` the window says that it is searching. It starts by
    /// itself when `Vigia` says so.
    Q_INVOKABLE void refrescar(bool silencioso = false);
    /// The owner's choice among several phones; an unknown UDID changes nothing.
    Q_INVOKABLE void seleccionar(const QString &udid);
    /// Whether the owner can see the window: what is shown is then kept fresh.
    void ponEnVista(bool vista);
    /// Asks in the background whether the selected phone lets us in; the answer lands in `avisoAcceso`.
    void comprobarAcceso();

    bool esConocido(const QString &udid) const;
    Q_INVOKABLE void marcarConocido(const QString &udid);

    /// Folder of the selected phone under "Vellora"; without a phone, the first folder there by name, or "iPhone".
    /// Nothing is created.
    QString carpetaBase() const;
    QString carpetaCopias() const;
    QString carpetaDatos() const;
    QString carpetaFotosParaIA() const;
    /// Where the selected phone's photos are kept: the owner's choice for it while that folder is there, else "Fotos"
    /// under `carpetaBase`.
    QString carpetaFotos() const;
    /// Whether the owner has chosen none.
    bool carpetaFotosEsLaDeSiempre() const;
    void ponCarpetaFotos(const QString &ruta);
    void volverACarpetaPorDefecto();
    /// Bytes that may be used on the volume of the home folder; absent when it does not tell.
    std::optional<qint64> libreEnElMac() const;
    /// Absent when `bytes` and a margin of two decimal gigabytes fit; otherwise the sentence for the owner.
    std::optional<QString> noCabe(qint64 bytes) const;
    /// Without a phone: the folder whose data is shown, empty when there is none or the owner has yet to choose; and
    /// all that there are to choose from. Empty with a phone.
    QString datosDe() const;
    QStringList carpetasConDatos() const;
    Q_INVOKABLE void elegirDatosDe(const QString &carpeta);
    /// Shows the folder in the file manager; with a phone it is made when missing, without one the nearest above it
    /// that is there is shown.
    Q_INVOKABLE void abrirEnFinder(const QString &carpeta);

    /// Applies a fresh reading: merge, selection, new phone. What else follows is up to who listens to `refrescado`.
    /// `antes` is the UDID selected when the reading began.
    void aplicar(const QList<Dispositivo> &leidos, const std::optional<QString> &antes);

signals:
    /// Any change, the job's included.
    void cambio();
    /// A change of the properties above.
    void cambioDeSesion();
    /// A refresh has been applied; `antes` as in `aplicar`.
    void refrescado(const std::optional<QString> &antes);
    /// The owner chose another phone: what is asked of the selected one alone has to be asked anew.
    void elegidoOtro();

private:
    QVariantList dispositivosVariante() const;
    bool hayIPhone() const { return seleccionado_.has_value(); }
    bool hayIPhoneNuevo() const { return iPhoneNuevo_.has_value(); }
    Dispositivo seleccionadoOVacio() const { return seleccionado_.value_or(Dispositivo()); }
    Dispositivo iPhoneNuevoOVacio() const { return iPhoneNuevo_.value_or(Dispositivo()); }
    QString avisoAccesoTexto() const { return avisoAcceso_.value_or(QString()); }
    Tarea *tareaPuntero() { return tarea_.get(); }
    Diario *diarioPuntero() { return diario_.get(); }
    void ponerEnOrden();
    void ponAvisoAcceso(const std::optional<QString> &aviso);
    void ponCallados(const QStringList &udids);
    void elegir(const std::optional<Dispositivo> &cual);
    void elegirTrasRefrescar(const std::optional<QString> &antes);
    const Dispositivo *conUdid(const QString &udid) const;

    QList<Dispositivo> dispositivos_;
    std::optional<Dispositivo> seleccionado_;
    bool buscando_ = true;
    std::optional<QString> avisoAcceso_;
    std::optional<Dispositivo> iPhoneNuevo_;
    std::unique_ptr<Diario> diario_;
    std::unique_ptr<Tarea> tarea_;
    QString avisoCallados_;
    QHash<QString, QString> nombres; ///< by UDID, of all that were seen
    std::unique_ptr<Vigia> vigia;
    bool preguntandoAcceso = false;
};

/// The sentence of `Modelo::noCabe`, for a volume with `libres` bytes.
std::optional<QString> sentenciaDeNoCabe(qint64 bytes, std::optional<qint64> libres);

} // namespace vellora
