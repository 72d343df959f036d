#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <plist/plist.h>

namespace vellora
{

/// A value inside a property list; belongs to its `Plist`. An absent one answers absent to everything, so that a path
/// into a file of unknown shape needs one test at its end.
class NodoPlist
{
public:
    explicit NodoPlist(plist_t elNodo = nullptr) : nodo(elNodo) {}

    NodoPlist operator[](const char *clave) const;
    NodoPlist en(quint32 posicion) const;
    /// Of a list; 0 for anything else.
    quint32 tamano() const;
    std::optional<QString> texto() const;
    std::optional<qint64> entero() const;
    std::optional<bool> logico() const;
    std::optional<QByteArray> datos() const;
    /// Position in `$objects` that an object of an archive (NSKeyedArchiver) stands for.
    std::optional<quint32> referencia() const;

private:
    plist_t nodo;
};

/// A property list, XML or binary, in memory. Any thread.
class Plist
{
public:
    /// Takes over what a library made.
    explicit Plist(plist_t nodo) : arbol(nodo) {}
    /// Absent when the bytes are no property list, or one that nests or unfolds beyond `medirPlist`.
    static std::optional<Plist> interpretar(const QByteArray &bytes);
    /// Absent when the file is missing, unreadable, no regular file or no property list, or larger than 64 MiB (meant
    /// for the small files that describe a backup).
    static std::optional<Plist> leer(const QString &fichero);

    NodoPlist raiz() const { return NodoPlist(arbol.get()); }
    /// For functions of a library; stays the property of this object.
    plist_t nodo() const { return arbol.get(); }

private:
    struct Liberar {
        void operator()(void *nodo) const { plist_free(nodo); }
    };

    std::unique_ptr<void, Liberar> arbol;
};

} // namespace vellora
