package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import android.content.res.AssetManager;
import java.awt.image.BufferedImage;
import java.io.File;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.List;
import java.util.function.Predicate;
import javax.imageio.ImageIO;
import org.junit.Test;

public class EndToEndTest {
    static void addEffects(LmText t) {
        t.LmText_AddStrokeTextEffect(3, 0xFF202A60, 1, 0, 1);  // outside
        t.LmText_AddOuterShadowTextEffect(120, 6, 4, 0xFF000000, 0.6f);
        t.LmText_AddInnerShadowTextEffect(45, 3, 2, 0xFF400000, 0.5f);
        t.LmText_AddOuterGlowTextEffect(6, 0xFFFFE000, 0.8f);
        t.LmText_AddLinearGradientTextEffect(90, 1, new int[] {0xFFFF0000, 0xFF0000FF}, new float[] {1, 0.5f},
                                             new float[] {0, 1}, 1);
    }

    // The render's R, G, B, A bytes against tests/golden/java_end_to_end.png, the image the C++
    // text object draws from the same lines (centred in the view, padding 10, 6, 12, 8). With
    // LM_UPDATE_GOLDEN=1 the render is stored as the new golden image instead.
    static void assertGolden(int width, int height, int[] pixels) throws Exception {
        File file = new File(System.getProperty("lm.golden.dir"), "java_end_to_end.png");
        BufferedImage image = new BufferedImage(width, height, BufferedImage.TYPE_4BYTE_ABGR);
        for (int i = 0; i < pixels.length; i++)
            for (int band = 0; band < 4; band++)
                image.getRaster().setSample(i % width, i / width, band, pixels[i] >>> (8 * band) & 0xFF);
        if ("1".equals(System.getenv("LM_UPDATE_GOLDEN"))) {
            ImageIO.write(image, "png", file);
            return;
        }
        BufferedImage golden = ImageIO.read(file);
        assertEquals(width, golden.getWidth());
        assertEquals(height, golden.getHeight());
        assertArrayEquals(golden.getRaster().getPixels(0, 0, width, height, (int[]) null),
                          image.getRaster().getPixels(0, 0, width, height, (int[]) null));
    }

    @Test
    public void aTextConfiguredFromJavaRendersAsTheStoredImage() throws Exception {
        byte[] bytes = Files.readAllBytes(Paths.get(NativeProbe.SANS));
        AssetManager assets = new AssetManager(new File(NativeProbe.FONTS));
        int[] first = null;
        for (Predicate<LmText> font : List.<Predicate<LmText>>of(t -> t.LmText_SetFont2("e2e-bytes", bytes),
                                                               t -> t.LmText_SetFont(NativeProbe.SANS),
                                                               t -> t.LmText_SetFont3(assets, "DejaVuSans.ttf"))) {
            LmText t = NativeProbe.configured(5, 0xFFE0F0FF);
            assertTrue(font.test(t));
            addEffects(t);
            int[] pixels = t.LmText_RenderTextEffect();
            int[] size = t.LmText_GetDrawingBitmapSize();
            assertEquals(260 + t.LmText_GetEffectLeftOffset() + t.LmText_GetEffectRightOffset(), size[0]);
            assertEquals(140 + t.LmText_GetEffectTopOffset() + t.LmText_GetEffectBottomOffset(), size[1]);
            if (first == null) assertGolden(size[0], size[1], first = pixels);
            assertArrayEquals(first, pixels);
            t.LmText_ClearAllTextEffect();
            assertEquals(0, t.LmText_GetEffectLeftOffset() + t.LmText_GetEffectTopOffset());
        }
    }
}
