#include "wave/OutlineWorker.h"

#include <QCoreApplication>

OutlineWorker::OutlineWorker() {
    m_thread.setMaxThreadCount(1);
}

OutlineWorker::~OutlineWorker() {
    cancel();
    m_thread.waitForDone();
}

void OutlineWorker::make(Sound sound, int columns, const OutlinePicture::Style& style, Done done) {
    cancel();
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    // What is asked for is handed over as a whole, so that the worker keeps no part of it.
    m_thread.start([cancelled = m_cancelled, sound = std::move(sound), columns, style,
                    done = std::move(done)]() mutable {
        QImage picture;
        if (!*cancelled)
            picture = OutlinePicture::of(WavePeaks::of(*sound, columns, *cancelled), style);
        const auto hand = [cancelled, picture, kept = std::move(sound), done = std::move(done)] {
            if (!*cancelled)
                done(picture);
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), hand, Qt::QueuedConnection);
    });
}

void OutlineWorker::cancel() {
    if (m_cancelled)
        *m_cancelled = true;
}
