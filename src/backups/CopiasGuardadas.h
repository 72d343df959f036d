#pragma once

#include "backups/CopiasAnteriores.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>

namespace vellora
{

class Consentimiento;
class Modelo;

/// What the window shows of the earlier backups of the selected phone, and the owner's wishes on them. Main thread
/// only.
class CopiasGuardadas : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int cuantas READ cuantas WRITE ponCuantas NOTIFY cambio)
    Q_PROPERTY(QVariantList filas READ filas NOTIFY cambio)
    Q_PROPERTY(QString ocupan READ ocupan NOTIFY cambio)

public:
    CopiasGuardadas(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre = nullptr);

    /// How many stay beside the present one, 0 to 9. Fewer take effect with the next backup.
    static int cuantas();
    void ponCuantas(int cuantas);
    /// For the view: "titulo", "detalle" and "carpeta" of each, youngest first.
    QVariantList filas() const;
    /// "Con la de ahora ocupan 12,4 GB."; empty while there is none.
    QString ocupan() const;
    const QList<CopiasAnteriores::Anterior> &lista() const { return anteriores; }

    /// Looks at the disk anew; the answer comes by `cambio`.
    Q_INVOKABLE void mirar();
    /// The folder of backups that one stands in, in the file manager.
    Q_INVOKABLE void ver(int fila);
    /// Asks the owner, and removes it.
    Q_INVOKABLE void pedirQuitar(int fila);

signals:
    void cambio();

private:
    QString clave() const;
    void quitar(const QString &copias, const CopiasAnteriores::Anterior &cual);

    Modelo &modelo;
    Consentimiento &consentimiento;
    QList<CopiasAnteriores::Anterior> anteriores;
    qint64 bytesEntreTodas = 0;
    QString deQuien; ///< whose they are: the phone's present backup, by its path
    int vez = 0;     ///< of the last look: a slower one before it is dropped
};

} // namespace vellora
