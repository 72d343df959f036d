#pragma once

#include "photos/FotoDelCarrete.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

namespace vellora
{

/// Small pictures of the files of the phone's roll. The engine makes them, a few at a time and the last asked for
/// first, and they stay in a folder between runs. Main thread only.
class Galeria : public QObject
{
    Q_OBJECT

public:
    /// Those that the engine makes in one run: enough to keep it busy, few enough to be seen soon.
    static constexpr qsizetype deUnaVez = 16;

    explicit Galeria(QObject *padre = nullptr);
    ~Galeria() override;

    /// All of them together take no more.
    static constexpr qint64 maximoEnDisco = 500'000'000;

    /// "miniaturas" in the program's cache, with a folder for each phone.
    static QString carpeta();
    static QString carpetaDe(const QString &udid);
    /// Removes the pictures of that phone whose photos are not in its roll any more, then of all phones the oldest
    /// until the rest takes no more than `maximo` bytes. Off the main thread.
    static void podar(const QString &udid, const QList<FotoDelCarrete> &carrete, qint64 maximo = maximoEnDisco);

    /// Whose pictures are asked for from now on; what was asked for another phone is forgotten.
    void preparar(const QString &udid, const QString &carpetaFotos);
    /// Path of the picture of a file, or empty: then it will be made, and `hecha` tells. One that is no picture is not
    /// tried again.
    QString miniatura(const FotoDelCarrete &foto);
    /// Whether it has yet to be made.
    bool falta(const FotoDelCarrete &foto) const;

    bool preparando() const { return preparando_; }
    qint64 preparadas() const { return preparadas_; }
    qint64 porPreparar() const { return static_cast<qint64>(cola.size()); }

signals:
    /// The path of a file of the phone whose picture is there now.
    void hecha(const QString &ruta);

private:
    void seguir();
    void acabarTanda(const QList<FotoDelCarrete> &tanda, bool hastaElFinal);
    QString ficheroDe(const FotoDelCarrete &foto) const;

    QString udid;
    QString carpetaFotos;
    QHash<QString, QString> listas; ///< pictures at hand, by the path on the phone
    QSet<QString> pedidas;
    QList<FotoDelCarrete> cola; ///< in the order asked for
    bool preparando_ = false;
    qint64 preparadas_ = 0;
    int numero = 0; ///< of the phone in hand
    QTimer espera;
};

} // namespace vellora
