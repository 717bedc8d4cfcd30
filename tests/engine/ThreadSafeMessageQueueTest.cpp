#include "handoff/ThreadSafeMessageQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using Queue = ThreadSafeMessageQueue<int>;

TEST(ThreadSafeMessageQueue, keepsOrderAndPeeksWithoutTaking) {
    Queue queue;
    EXPECT_EQ(queue.getMessageIfAvailable(), nullptr);
    EXPECT_EQ(queue.messageAtHeadOfQueue(), nullptr);
    const auto first = std::make_shared<int>(1);
    queue.addMessage(first);
    queue.addMessage(std::make_shared<int>(2));
    EXPECT_EQ(queue.messageAtHeadOfQueue(), first);
    EXPECT_EQ(queue.messageAtHeadOfQueue(), first);
    EXPECT_TRUE(queue.blockUntilMessageAvailable());
    EXPECT_EQ(queue.getMessageIfAvailable(), first);
    EXPECT_EQ(*queue.blockUntilMessage(), 2);
    EXPECT_FALSE(queue.messagesAreAvailable());
    queue.addMessage(first);
    queue.removeAllMessages();
    EXPECT_FALSE(queue.messagesAreAvailable());
    EXPECT_EQ(first.use_count(), 1);
}

// Signals until the other thread has answered, so that none is lost before it waits.
template <typename Answer>
static auto answerWhenSignalled(Queue& queue, Answer answer) {
    std::atomic<bool> answered{false};
    decltype(answer()) result{};
    std::thread waiter([&] {
        result = answer();
        answered = true;
    });
    while (!answered) {
        queue.specialSignal();
        std::this_thread::yield();
    }
    waiter.join();
    return result;
}

TEST(ThreadSafeMessageQueue, aSignalWithoutAMessageWakesWithNothing) {
    Queue queue;
    EXPECT_FALSE(answerWhenSignalled(queue, [&] { return queue.blockUntilMessageAvailable(); }));
    EXPECT_EQ(answerWhenSignalled(queue, [&] { return queue.blockUntilMessage(); }), nullptr);
}

TEST(ThreadSafeMessageQueue, handsEveryMessageOverOnceAndInOrder) {
    constexpr int kMessages = 20000;
    Queue queue;
    std::vector<int> taken;
    std::thread consumer([&] {
        while (taken.size() < kMessages) {
            if (!queue.blockUntilMessageAvailable())
                continue;
            taken.push_back(*queue.messageAtHeadOfQueue());
            queue.getMessageIfAvailable();
        }
    });
    for (int n = 0; n < kMessages; ++n)
        queue.addMessage(std::make_shared<int>(n));
    consumer.join();
    ASSERT_EQ(taken.size(), std::size_t(kMessages));
    for (int n = 0; n < kMessages; ++n)
        ASSERT_EQ(taken[std::size_t(n)], n);
}

TEST(ThreadSafeMessageQueue, holdsStillWhileItsLockIsHeld) {
    Queue queue;
    for (int n = 0; n < 100; ++n)
        queue.addMessage(std::make_shared<int>(n));
    std::thread thief;
    {
        std::lock_guard walking(queue.getLock());
        thief = std::thread([&] {
            while (queue.getMessageIfAvailable()) {
            }
        });
        for (int round = 0; round < 100; ++round) {
            int expected = 0;
            for (const auto& message : queue)
                EXPECT_EQ(*message, expected++);
            EXPECT_EQ(expected, 100);
            EXPECT_TRUE(queue.messagesAreAvailable());
        }
    }
    thief.join();
    EXPECT_FALSE(queue.messagesAreAvailable());
}
