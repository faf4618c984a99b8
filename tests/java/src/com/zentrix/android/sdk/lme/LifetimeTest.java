package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import java.util.concurrent.atomic.AtomicInteger;
import org.junit.Test;

public class LifetimeTest {
    @Test(timeout = 120000)
    public void objectsDroppedOnManyThreadsAreAllReleased() throws Exception {
        // Fonts register from one thread at a time; later SetFont calls only look the font up.
        assertTrue(new LmText().LmText_SetFont(NativeProbe.SANS));
        AtomicInteger lastHandle = new AtomicInteger(), failures = new AtomicInteger();
        Thread[] threads = new Thread[4];
        for (int i = 0; i < threads.length; i++) {
            threads[i] = new Thread(() -> {
                for (int k = 0; k < 30; k++) {
                    LmText t = NativeProbe.configured(5);
                    t.LmText_SetFont(NativeProbe.SANS);
                    t.LmText_AddStrokeTextEffect(2, 0xFF000000, 1, 0, 1);
                    if (t.LmText_RenderTextEffect() == null) failures.incrementAndGet();
                    lastHandle.accumulateAndGet(t.mHandle, Math::max);
                    if (k % 10 == 0) System.gc();
                }
            });
            threads[i].start();
        }
        for (Thread thread : threads) thread.join();
        for (int i = 0; i < 100 && NativeProbe.liveObjects(lastHandle.get()) > 0; i++) {
            System.gc();
            System.runFinalization();
            Thread.sleep(20);
        }
        assertEquals(0, failures.get());
        assertEquals(0, NativeProbe.liveObjects(lastHandle.get()));
    }
}
