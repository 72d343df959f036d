#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QPointer>

#include <thread>
#include <utility>

namespace vellora
{

/// Runs `trabajo` on a thread of its own and hands its result to `despues` on the main thread, unless `contexto` has
/// gone by then. A thread each, since most of them wait for a tool: a pool of as many as cores would let one silent
/// tool hold up the rest. Main thread only.
template <typename Trabajo, typename Despues> void enSegundoPlano(QObject *contexto, Trabajo trabajo, Despues despues)
{
    std::thread([contexto = QPointer<QObject>(contexto), trabajo = std::move(trabajo),
                 despues = std::move(despues)]() mutable {
        auto resultado = trabajo();
        auto *programa = QCoreApplication::instance();
        if (programa == nullptr)
            return; // the program is ending
        auto entregar = [contexto, despues = std::move(despues), resultado = std::move(resultado)]() mutable {
            if (contexto)
                despues(std::move(resultado));
        };
        QMetaObject::invokeMethod(programa, std::move(entregar), Qt::QueuedConnection);
    }).detach();
}

} // namespace vellora
