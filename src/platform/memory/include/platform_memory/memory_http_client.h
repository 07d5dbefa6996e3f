#pragma once

#include "platform/http_client.h"

namespace nivora::memory {

// A web with one answer for everybody, or a real one.
class MemoryHttpClient final : public platform::HttpClient
{
public:
    platform::Task send(const platform::HttpRequest &request,
                        platform::HttpCallbacks callbacks) override
    {
        if (m_real)
            return m_real->send(request, std::move(callbacks));
        return platform::Task(new Exchange({m_status, request.url}, m_body, std::move(callbacks)));
    }

    // Without a status nobody answers.
    void setAnswer(int status, const QByteArray &body)
    {
        m_status = status;
        m_body = body;
    }

    // Borrows the client, which makes every request from here on.
    void connectTo(platform::HttpClient &real) { m_real = &real; }

private:
    class Exchange final : public platform::Operation
    {
    public:
        Exchange(const platform::HttpHead &head, const QByteArray &body,
                 platform::HttpCallbacks callbacks)
            : m_delay(platform::delay({}, [this, head, body, callbacks = std::move(callbacks)] {
                using platform::HttpFailure;
                using platform::NetworkFault;
                std::optional<HttpFailure> failure;
                if (head.status == 0)
                    failure = HttpFailure{NetworkFault::CannotConnectToHost, {}};
                else if (!deliver([&] { callbacks.onHead(head); }) ||
                         (!body.isEmpty() && !deliver([&] { callbacks.onBytes(body); })))
                    return;
                finish([&] { callbacks.onEnd(failure); });
            }))
        {
        }

    private:
        void stop() override { m_delay.cancel(); }

        platform::Task m_delay;
    };

    platform::HttpClient *m_real = nullptr;
    int m_status = 0;
    QByteArray m_body;
};

} // namespace nivora::memory
