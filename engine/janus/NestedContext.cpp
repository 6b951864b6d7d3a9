#include "engine/janus/NestedContext.h"

#include <algorithm>
#include <vector>

namespace Corvanta::Engine {

namespace {

// The source of the outer context. It keeps a reference to the inner one, which it has acquired.
struct InnerSource {
    GSource source;
    GMainContext* inner;
    // What the inner context waits for, told to the outer one as well. On the heap, where it stays.
    std::vector<GPollFD>* polled;
    gint priority;
};

InnerSource* Of(GSource* source) {
    return reinterpret_cast<InnerSource*>(source);
}

bool IsSame(const std::vector<GPollFD>& now, const std::vector<GPollFD>& before) {
    return std::equal(now.begin(), now.end(), before.begin(), before.end(),
                      [](const GPollFD& one, const GPollFD& other) {
                          return one.fd == other.fd && one.events == other.events;
                      });
}

gboolean Prepare(GSource* source, gint* timeout) {
    InnerSource* const self = Of(source);
    if (g_main_context_prepare(self->inner, &self->priority) != FALSE) {
        *timeout = 0;
    }
    std::vector<GPollFD> wanted(self->polled->size() + 8);
    while (true) {
        const gint count = g_main_context_query(self->inner, self->priority, timeout, wanted.data(),
                                                static_cast<gint>(wanted.size()));
        const bool fits = count <= static_cast<gint>(wanted.size());
        wanted.resize(static_cast<std::size_t>(count));
        if (fits) break;
    }
    if (!IsSame(wanted, *self->polled)) {
        for (GPollFD& polled : *self->polled) g_source_remove_poll(source, &polled);
        *self->polled = wanted;
        for (GPollFD& polled : *self->polled) g_source_add_poll(source, &polled);
    }
    // The inner context is checked only after a poll.
    return FALSE;
}

gboolean Check(GSource* source) {
    InnerSource* const self = Of(source);
    return g_main_context_check(self->inner, self->priority, self->polled->data(),
                                static_cast<gint>(self->polled->size()));
}

gboolean Dispatch(GSource* source, GSourceFunc, gpointer) {
    GMainContext* const inner = g_main_context_ref(Of(source)->inner);
    g_main_context_push_thread_default(inner);
    g_main_context_dispatch(inner);
    g_main_context_pop_thread_default(inner);
    g_main_context_unref(inner);
    return G_SOURCE_CONTINUE;
}

void Finalize(GSource* source) {
    InnerSource* const self = Of(source);
    g_main_context_release(self->inner);
    g_main_context_unref(self->inner);
    delete self->polled;
}

GSourceFuncs gInnerFunctions{Prepare, Check, Dispatch, Finalize, nullptr, nullptr};

}  // namespace

NestedContext::NestedContext(GMainContext* outer) : context(g_main_context_new()) {
    g_main_context_acquire(context);
    source.reset(g_source_new(&gInnerFunctions, sizeof(InnerSource)));
    InnerSource* const self = Of(source.get());
    self->inner = g_main_context_ref(context);
    self->polled = new std::vector<GPollFD>();
    self->priority = G_PRIORITY_DEFAULT;
    g_source_attach(source.get(), outer);
}

NestedContext::~NestedContext() {
    source.reset();
    g_main_context_unref(context);
}

void NestedContext::Run(const std::function<void()>& task) const {
    g_main_context_push_thread_default(context);
    task();
    g_main_context_pop_thread_default(context);
}

void NestedContext::ServeUntil(const std::function<bool()>& condition,
                               std::chrono::milliseconds longest) const {
    bool isOver = false;
    const OwnedSource timer = StartTimer(context, longest, [&] { isOver = true; });
    g_main_context_push_thread_default(context);
    while (!isOver && !condition()) g_main_context_iteration(context, TRUE);
    g_main_context_pop_thread_default(context);
}

}  // namespace Corvanta::Engine
