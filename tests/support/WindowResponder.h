#pragma once

#include <QApplication>
#include <QObject>
#include <QTimer>

#include <functional>
#include <utility>

namespace zvtest {

/// Runs something once a dialog or menu of this kind waits for the user, the next one that does.
template <typename Window>
class WindowResponder : public QObject
{
public:
    explicit WindowResponder(std::function<void(Window&)> answer)
    {
        m_timer.callOnTimeout(this, [this, answer = std::move(answer)] {
            QWidget* const popup = QApplication::activePopupWidget();
            auto* const window =
                qobject_cast<Window*>(popup ? popup : QApplication::activeModalWidget());
            if (!window)
                return;
            m_timer.stop();
            ++count;
            answer(*window);
        });
        m_timer.start(10);
    }

    int count = 0;

private:
    QTimer m_timer;
};

} // namespace zvtest
