package android.content.res;

import java.io.File;
import java.io.FileInputStream;
import java.io.IOException;
import java.io.InputStream;

/** Host stand-in serving the files of one folder; open fails once closed. */
public class AssetManager {
    private final File folder;
    private boolean closed;

    public AssetManager(File folder) { this.folder = folder; }
    public void close() { closed = true; }

    public InputStream open(String name) throws IOException {
        if (closed) throw new IllegalStateException("Assetmanager has been closed");
        return new FileInputStream(new File(folder, name));
    }
}
